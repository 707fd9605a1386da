#include "cli/StampOptions.h"

#include <limits>
#include <map>

#include "cli/Answers.h"
#include "cli/CommandArguments.h"
#include "common/Exceptions.h"
#include "document/galleries/Gallery.h"
#include "imaging/Image.h"
#include "resources/StringTable.h"

namespace {

const QString Watermark = QStringLiteral("watermark");
const QString Signature = QStringLiteral("signature");
const QString Position = QStringLiteral("position");
const QString Margin = QStringLiteral("margin");
const QString SizeClass = QStringLiteral("size-class");

constexpr int32_t BottomRight = 10;
constexpr int32_t LargestPosition = 15;

[[noreturn]] void ThrowBadValue(const CommandArguments& arguments, const QString& option)
{
    throw CWrongUse(Text(StringId::BadOptionValue, arguments.Get(option), option));
}

// A number from 0 to the largest; -1 for anything else.
int32_t NumberIn(const QString& text, int32_t largest)
{
    bool isNumber = false;
    const int32_t number = text.toInt(&isNumber);
    return isNumber && number >= 0 && number <= largest ? number : -1;
}

int32_t ReadPosition(const CommandArguments& arguments)
{
    static const std::map<QString, int32_t> names{
        {QStringLiteral("centre"), 0},        {QStringLiteral("left"), 1},
        {QStringLiteral("right"), 2},         {QStringLiteral("top"), 4},
        {QStringLiteral("top-left"), 5},      {QStringLiteral("top-right"), 6},
        {QStringLiteral("bottom"), 8},        {QStringLiteral("bottom-left"), 9},
        {QStringLiteral("bottom-right"), 10},
    };
    if (!arguments.Has(Position)) {
        return BottomRight;
    }
    const auto name = names.find(arguments.Get(Position));
    const int32_t position =
        name != names.end() ? name->second : NumberIn(arguments.Get(Position), LargestPosition);
    if (position < 0) {
        ThrowBadValue(arguments, Position);
    }
    return position;
}

int32_t ReadMargin(const CommandArguments& arguments)
{
    if (!arguments.Has(Margin)) {
        return CStampParams().margin;
    }
    const int32_t margin = NumberIn(arguments.Get(Margin), std::numeric_limits<int32_t>::max());
    if (margin < 0) {
        ThrowBadValue(arguments, Margin);
    }
    return margin;
}

std::vector<size_t> ReadSizeClasses(const CommandArguments& arguments)
{
    static const std::map<QString, std::vector<size_t>> names{
        {QStringLiteral("small"), {0}},
        {QStringLiteral("middle"), {1}},
        {QStringLiteral("large"), {2}},
        {QStringLiteral("all"), {0, 1, 2}},
    };
    const auto classes =
        names.find(arguments.Has(SizeClass) ? arguments.Get(SizeClass) : QStringLiteral("all"));
    if (classes == names.end()) {
        ThrowBadValue(arguments, SizeClass);
    }
    return classes->second;
}

// Found out now and not by the visitors of the site: a watermark that can't be read draws nothing.
QString ReadableWatermark(const QString& argument)
{
    const QString path = ExistingPath(argument);
    const CImage image = CImage::FromFile(path);
    if (image.GetRgba().isEmpty()) {
        throw CGenericException(Text(StringId::WatermarkNotReadable, path), image.GetCondition().reason,
                                Text(StringId::ChooseAnotherWatermark));
    }
    return path;
}

} // namespace

QStringList CStampOptions::GetNames()
{
    return {Watermark, Signature, Position, Margin, SizeClass};
}

CStampOptions::CStampOptions(const CommandArguments& arguments)
{
    if (!arguments.Has(Watermark) && !arguments.Has(Signature)) {
        for (const QString& option : {Position, Margin, SizeClass}) {
            if (arguments.Has(option)) {
                throw CWrongUse(Text(StringId::OptionNeedsStamp, option));
            }
        }
        return;
    }
    const CStampParams place{.position = ReadPosition(arguments), .margin = ReadMargin(arguments)};
    static_cast<CStampParams&>(watermark) = place;
    static_cast<CStampParams&>(signature) = place;
    sizeClasses = ReadSizeClasses(arguments);
    if (arguments.Has(Signature)) {
        signature.text = arguments.Get(Signature);
        if (signature.text.isEmpty()) {
            ThrowBadValue(arguments, Signature);
        }
    }
    if (arguments.Has(Watermark)) {
        watermark.file = ReadableWatermark(arguments.Get(Watermark));
    }
}

void CStampOptions::ApplyTo(CGallery& gallery) const
{
    for (const size_t sizeClass : sizeClasses) {
        gallery.GetImageStamps()[sizeClass] = watermark;
        gallery.GetTextStamps()[sizeClass] = signature;
    }
}
