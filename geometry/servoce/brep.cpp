#include "geometry/servoce/brep.h"

#include <BRepTools.hxx>

#include "geometry/servoce/guard.h"

namespace servoce {

bool write_brep(const shape &model, const std::string &path)
{
    return detail::guarded("write_brep", false, [&] {
        if (model.is_null())
            return false;
        return bool(BRepTools::Write(model.Shape(), path.c_str()));
    });
}

} // namespace servoce
