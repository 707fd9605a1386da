#include "shell/web/HTMLViewOptions.h"

#include "common/Settings.h"

namespace {

constexpr int utf8 = 65001;

QByteArray CharsetOfCodePage(int codePage)
{
    if (codePage >= 1250 && codePage <= 1258) {
        return "windows-" + QByteArray::number(codePage);
    }
    if (codePage >= 28591 && codePage <= 28605) {
        return "iso-8859-" + QByteArray::number(codePage - 28590);
    }
    switch (codePage) {
    case 874:
        return "windows-874";
    case 932:
        return "shift_jis";
    case 936:
        return "gbk";
    case 949:
        return "euc-kr";
    case 950:
        return "big5";
    default:
        return "utf-8";
    }
}

} // namespace

QByteArray CharsetOfOption(const HTMLViewOptions& options)
{
    if (!options.settings || options.optionKeyPath.isEmpty()) {
        return CharsetOfCodePage(utf8);
    }
    const QString key = options.optionKeyPath + QStringLiteral("/International");
    const QString name = QStringLiteral("Default_CodePage");
    const auto codePage = options.settings->Read(CSettingsStore::Scope::User, key, name);
    if (!codePage) {
        options.settings->Write(CSettingsStore::Scope::User, key, name, QString::number(utf8));
        return CharsetOfCodePage(utf8);
    }
    return CharsetOfCodePage(codePage->toInt());
}
