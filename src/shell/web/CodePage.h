#pragma once

#include "shell/web/HTMLView.h"

// The charset of the pages that name none, by the option Default_CodePage of the view's branch of the
// settings. An option that is not there yet is written: the program's own narrow code page, UTF-8. A number
// that stands for no known code page counts as UTF-8.
QByteArray CharsetOfOption(const CHTMLView::Options& options);
