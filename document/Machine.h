#pragma once

// The machine types belong to the script catalogue, which names them in its keys.
#include "QmlScripting/Machine.h"
