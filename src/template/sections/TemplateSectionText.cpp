#include "template/sections/TemplateSectionText.h"

void CTemplateSectionText::Generate(CImageIterator&, CContentGenerator&, std::ostream& out)
{
    out << text.c_str(); // odd on purpose: a NUL byte in a page has always ended the output of its section
}
