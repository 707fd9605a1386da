#include "common/SerialisedValues.h"

namespace {

constexpr char noLetter = '?'; // stands for every character that is in none of the words

int DigitOf(char character)
{
    if (character >= '0' && character <= '9') {
        return character - '0';
    }
    const char lower = static_cast<char>(character | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : 16;
}

bool IsDigitAt(const QByteArray& ini, qsizetype place, int radix)
{
    return place < ini.size() && DigitOf(ini[place]) < radix;
}

// The character whose number begins at place, which is moved after it.
char ReadNumber(const QByteArray& ini, qsizetype& place, int radix)
{
    int code = 0;
    for (; IsDigitAt(ini, place, radix); ++place) {
        code = (code * radix + DigitOf(ini[place])) & 0xffff; // a UTF-16 unit, however many digits there are
    }
    return code < 0x80 ? static_cast<char>(code) : noLetter;
}

// What stands after a "\" at place, which is moved after it.
QByteArray ReadEscape(const QByteArray& ini, qsizetype& place)
{
    if (IsDigitAt(ini, place, 8)) {
        return QByteArray(1, ReadNumber(ini, place, 8));
    }
    const char kind = ini[place];
    ++place;
    if (kind == 'x' && IsDigitAt(ini, place, 16)) {
        return QByteArray(1, ReadNumber(ini, place, 16));
    }
    // A line that goes on in the next one; its end may be of two characters.
    const bool isLineEnd = kind == '\r' || kind == '\n';
    if (isLineEnd && place < ini.size() && ini[place] != kind && (ini[place] == '\r' || ini[place] == '\n')) {
        ++place;
    }
    // All others but these are left out.
    return QByteArray("abfnrtv\"?'\\").contains(kind) ? QByteArray(1, noLetter) : QByteArray();
}

QByteArray WithoutEscapesAndQuotes(const QByteArray& ini)
{
    QByteArray text;
    for (qsizetype place = 0; place < ini.size();) {
        const char character = ini[place];
        ++place;
        if (character == '\\' && place < ini.size()) {
            text += ReadEscape(ini, place);
        } else if (character != '"') {
            text += character;
        }
    }
    return text;
}

// A text that begins with "@" is written with two of them.
bool HoldsValueOf(const QByteArray& text, const QByteArray& word)
{
    for (qsizetype found = text.indexOf(word); found >= 0; found = text.indexOf(word, found + 1)) {
        if (found == 0 || text[found - 1] != '@') {
            return true;
        }
    }
    return false;
}

} // namespace

bool HoldsSerialisedValues(const QByteArray& ini)
{
    const QByteArray text = WithoutEscapesAndQuotes(ini);
    return HoldsValueOf(text, "@Variant(") || HoldsValueOf(text, "@DateTime(");
}
