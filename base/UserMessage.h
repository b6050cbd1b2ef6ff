#pragma once

#include <QString>
#include <functional>

// What the model has to tell the user beyond the log and the console. The model only
// raises the message; the application decides how it is shown (a message box, or
// the log where nobody can answer). Without a presenter the message is dropped: the
// model logs its reasons itself.
namespace UserMessage {

using Presenter = std::function<void(const QString &text)>;

void setCriticalPresenter(Presenter presenter);
void critical(const QString &text);

} // namespace UserMessage
