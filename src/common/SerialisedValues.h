#pragma once

#include <QByteArray>

// Whether an INI file has values that QSettings takes for objects of Qt ("@Variant(...)", "@DateTime(...)",
// in any spelling). It believes the lengths and depths that stand in them, so that a few bytes can exhaust
// memory or stack. May also say so of a text that has those words in its middle. Thread-safe.
bool HoldsSerialisedValues(const QByteArray& ini);
