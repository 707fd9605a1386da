#pragma once

#include <QString>

// Text of other programs and servers as it may be shown on a terminal, where it must not do more than be
// seen: control characters are replaced.
QString Printable(QString text);
