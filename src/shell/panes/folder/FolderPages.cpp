#include "shell/panes/folder/FolderPages.h"

#include <algorithm>
#include <sstream>

#include <QJsonArray>
#include <QJsonDocument>

#include "common/FileSystem.h"
#include "common/Platform.h"
#include "common/Text.h"
#include "content/ContentGeneratorViews.h"
#include "resources/Resources.h"
#include "resources/StringTable.h"
#include "shell/panes/folder/ViewFolderImageIterator.h"

namespace {

constexpr int scrollBarWidth = 12; // as the pages' style sheet has it
constexpr size_t rowsInBlock = 20;

std::string Resource(int number)
{
    return FindResource(QString::number(number), QStringLiteral("html")).toStdString();
}

std::string ListScript()
{
    return "<script>\n" + FindResource(QStringLiteral("folder_list"), QStringLiteral("js")).toStdString() +
           "</script>\n";
}

std::string Escaped(const QString& text)
{
    return Narrow(text.toHtmlEscaped());
}

std::string TextRow(const QString& text)
{
    return "<tr class=\"text\"><td colspan=2>" + Escaped(text) + "</td></tr>\n";
}

std::string Heading(const QString& folder, int32_t count)
{
    return "<tr><th align=left>" + Escaped(FolderName(folder)) + " ( " + std::to_string(count) + ' ' +
           Narrow(Text(count == 1 ? StringId::PictureWord : StringId::PicturesWord)) + " ) </th></tr>\n";
}

void WriteRows(CViewFolderImageIterator& iterator, QSize card, std::ostream& out)
{
    CContentGeneratorFolderView generator(FindTemporaryFolder());
    size_t row = 0;
    for (iterator.Reset(); iterator.HasPicture(); iterator.NextPicture(), ++row) {
        if (row % rowsInBlock == 0) {
            out << (row == 0 ? "" : "</template></tbody>\n") << "<tbody class=\"block\"><template>";
        }
        const std::string index = std::to_string(iterator.GetIndex());
        generator.GeneratePicture(iterator,
                                  {.id = "i" + index,
                                   .href = "addpicture" + index,
                                   .height = std::to_string(card.height()),
                                   .width = std::to_string(card.width()),
                                   .alt = Narrow(Text(StringId::AddPicture))},
                                  out);
    }
    out << (row == 0 ? "" : "</template></tbody>\n");
}

} // namespace

QSize CardSize(int viewWidth)
{
    // A pane can be made narrower than any card.
    const int width = std::max(viewWidth - scrollBarWidth - 28, 16);
    return QSize(width, width * 75 / 100);
}

std::string BuildLoadingPage()
{
    return Resource(246);
}

std::string BuildProgressPage(int count)
{
    return Resource(301) + std::to_string(count) + Resource(302) + ListScript() + "</body>\n</html>\n";
}

QString SetCountScript(int count)
{
    return QStringLiteral("folderList.setCount(%1)").arg(count);
}

QString AppendCardsScript(const std::vector<FolderCard>& cards)
{
    QJsonArray blocks;
    QString rows;
    for (size_t i = 0; i < cards.size(); ++i) {
        rows += QStringLiteral("<tr><td colspan=2><img src=\"%1\" alt=\"\"></td></tr>")
                    .arg(AddressOfFile(cards[i].thumbnailPath));
        if ((i + 1) % rowsInBlock == 0 || i + 1 == cards.size()) {
            blocks.append(rows);
            rows.clear();
        }
    }
    return QStringLiteral("folderList.append(%1)")
        .arg(QString::fromUtf8(QJsonDocument(blocks).toJson(QJsonDocument::Compact)));
}

std::string BuildListPage(const FolderPage& page, CViewFolderImageIterator& iterator)
{
    std::ostringstream out;
    out << Resource(226);
    out << "<style>:root { --card: " << page.card.width() << " / " << page.card.height() << "; }</style>\n";
    CContentGeneratorFolderView(FindTemporaryFolder()).GeneratePageHeader(iterator, out);
    out << Resource(247) << Heading(page.folder, iterator.GetPictureCount());
    WriteRows(iterator, page.card, out);
    iterator.Reset();
    if (iterator.GetPictureCount() == 0) {
        out << TextRow(Text(StringId::FolderHasNoPictures));
    } else if (!iterator.HasPicture()) {
        out << TextRow(Text(StringId::AllPicturesInGallery));
    }
    out << "<tr class=\"end\"><td height=100%></td></tr>" << ListScript() << Resource(225);
    return out.str();
}

QString HideRowsScript(const std::vector<int32_t>& indices)
{
    QStringList ids;
    for (const int32_t index : indices) {
        ids += QStringLiteral("\"i%1\"").arg(index);
    }
    return QStringLiteral("folderList.hide([%1])").arg(ids.join(QLatin1Char(',')));
}

QString HideAllRowsScript()
{
    return QStringLiteral("folderList.hideAll()");
}

std::string BuildTextPage(const QString& heading, const QStringList& paragraphs)
{
    std::string page =
        Resource(226) + Resource(247) + "<tr><th align=left>" + Escaped(heading) + "</th></tr>\n";
    for (const QString& paragraph : paragraphs) {
        page += TextRow(paragraph);
    }
    return page + "<tr class=\"end\"><td height=100%></td></tr>" + Resource(225);
}

std::string BuildStatePage(const QString& folder, FolderPictures::State state)
{
    const bool isMissing = state == FolderPictures::State::Missing;
    return BuildTextPage(
        FolderName(folder),
        {Text(isMissing ? StringId::FolderVanished : StringId::FolderNotReadable), folder,
         Text(isMissing ? StringId::FolderVanishedAdvice : StringId::FolderNotReadableAdvice)});
}

std::string BuildFailurePage(const QString& folder, const QStringList& why)
{
    return BuildTextPage(FolderName(folder), QStringList{Text(StringId::FolderNotShown)} + why);
}

QString WithoutTrailingSeparator(const QString& folder)
{
    QString plain = folder;
    while (plain.size() > 1 && plain.endsWith(QLatin1Char('/'))) {
        plain.chop(1);
    }
    return plain;
}

QString FolderName(const QString& folder)
{
    const QString plain = WithoutTrailingSeparator(folder);
    const QString name = ExtractLastName(plain);
    return name.isEmpty() ? plain : name;
}
