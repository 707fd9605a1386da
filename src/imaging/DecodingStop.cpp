#include "imaging/DecodingStop.h"

#include "imaging/ImageNode.h"
#include "resources/StringTable.h"

namespace {

thread_local const std::function<bool()>* current = nullptr;

} // namespace

CDecodingStop::CDecodingStop(std::function<bool()> isWanted) : isWanted(std::move(isWanted))
{
    current = &this->isWanted;
}

CDecodingStop::~CDecodingStop()
{
    current = nullptr;
}

bool CDecodingStop::IsWanted()
{
    return current != nullptr && (*current)();
}

void CDecodingStop::ThrowIfWanted()
{
    if (IsWanted()) {
        throw CNoPixelsException{Text(StringId::ImageDataIncomplete)};
    }
}
