#pragma once

#include <QString>

// The project's path in the text of a command line; there are no switches. A text that begins with a double
// quote gives what stands up to the next one (up to the end if there is none), any other gives the whole
// text. Empty for an empty text.
QString ParseCommandLinePath(const QString& commandLine);
