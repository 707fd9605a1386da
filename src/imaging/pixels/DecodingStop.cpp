#include "imaging/pixels/DecodingStop.h"

#include "imaging/pixels/Pixels.h"
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
