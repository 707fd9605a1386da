#include "resources/FormatText.h"

#include <map>
#include <vector>

namespace {

// A piece of a format text: a placeholder, "%%", or what lies between them.
struct Piece {
    QStringView source;
    QStringView shown;     // what it gives if it is no placeholder or has no argument
    QStringView kind = {}; // of a placeholder: "s", "d", "x", "hs", "hc"
    int argument = 0;      // the number of a placeholder's argument, from 1 on; 0: the next one
};

QStringView KindAt(QStringView text)
{
    for (const QLatin1String kind : {QLatin1String("s"), QLatin1String("d"), QLatin1String("x"),
                                     QLatin1String("hs"), QLatin1String("hc")}) {
        if (text.startsWith(kind)) {
            return text.left(kind.size());
        }
    }
    return {};
}

Piece PieceAt(QStringView text)
{
    if (text.front() != QLatin1Char('%')) {
        const qsizetype percent = text.indexOf(QLatin1Char('%'));
        const QStringView words = percent < 0 ? text : text.left(percent);
        return {.source = words, .shown = words};
    }
    if (text.startsWith(QLatin1String("%%"))) {
        return {.source = text.left(2), .shown = text.left(1)};
    }
    const bool isNumbered = text.size() > 2 && text[1] >= QLatin1Char('1') && text[1] <= QLatin1Char('9') &&
                            text[2] == QLatin1Char('$');
    const qsizetype head = isNumbered ? 3 : 1;
    const QStringView kind = KindAt(text.mid(head));
    const QStringView source = text.left(kind.isEmpty() ? 1 : head + kind.size());
    return {.source = source,
            .shown = source,
            .kind = kind,
            .argument = isNumbered && !kind.isEmpty() ? text[1].digitValue() : 0};
}

std::vector<Piece> Split(QStringView format)
{
    std::vector<Piece> pieces;
    int next = 1;
    while (!format.isEmpty()) {
        Piece piece = PieceAt(format);
        if (!piece.kind.isEmpty() && piece.argument == 0) {
            piece.argument = next++;
        }
        format = format.mid(piece.source.size());
        pieces.push_back(piece);
    }
    return pieces;
}

// The kinds of the arguments that a format text shows, by their numbers. Nothing if it shows one argument in
// two ways.
std::optional<std::map<int, QStringView>> FindKinds(QStringView format)
{
    std::map<int, QStringView> kinds;
    for (const Piece& piece : Split(format)) {
        if (!piece.kind.isEmpty() && kinds.emplace(piece.argument, piece.kind).first->second != piece.kind) {
            return std::nullopt;
        }
    }
    return kinds;
}

} // namespace

QString FormatText(const QString& format, std::initializer_list<CFormatArgument> arguments)
{
    QString result;
    for (const Piece& piece : Split(format)) {
        if (!piece.kind.isEmpty() && piece.argument <= static_cast<int>(arguments.size())) {
            result += (arguments.begin() + piece.argument - 1)->GetText();
        } else {
            result += piece.shown;
        }
    }
    return result;
}

bool FitsPlaceholders(const QString& translation, const QString& original)
{
    const auto wanted = FindKinds(original);
    const auto shown = FindKinds(translation);
    if (!wanted || !shown) {
        return false;
    }
    for (const auto& [argument, kind] : *shown) {
        const auto found = wanted->find(argument);
        if (found == wanted->end() || found->second != kind) {
            return false;
        }
    }
    for (const auto& [argument, kind] : *wanted) {
        if (kind != QLatin1String("d") && !shown->contains(argument)) {
            return false;
        }
    }
    return true;
}
