#include <sstream>

#include "Check.h"
#include "template/TemplateLanguage.h"
#include "template/parser/CompoundTemplateSection.h"
#include "template/parser/TemplateParsingException.h"

// Bytes of a layout's page: they parse, or the mark of what is wrong lies in them.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    std::istringstream stream(std::string(reinterpret_cast<const char*>(bytes), size));
    CCompoundTemplateSection page;
    try {
        ParsePage(stream, page);
    } catch (const CTemplateParsingException& failure) {
        Check(!failure.GetDescription().isEmpty(), "an error of a page says what is wrong");
        Check(failure.errorStart <= failure.errorEnd, "a mark has its start before its end");
        Check(failure.errorEnd <= size, "a mark lies in the page");
    }
    return 0;
}
