#pragma once
// The pictures of the tool buttons, drawn in code.
#include <QIcon>
#include <QString>

namespace recscope {

// A 24 x 24 picture for the tool button with `key`.
QIcon ToolIcon(const QString &key);

}  // namespace recscope
