#include "FolderPane.h"

#include <QFile>
#include <QRegularExpression>
#include <gtest/gtest.h>

namespace {

// Rows that are not filled yet count as well.
const QString rowCount = QStringLiteral(
    "[...document.querySelectorAll('tbody.block')].reduce((n, b) => n + (b.querySelector('.gap') ? "
    "b.querySelector('template').content.childElementCount : "
    "[...b.rows].filter(r => r.style.display != 'none').length), 0)");

} // namespace

CFolderPane::CFolderPane(CDesktopProgram& program)
    : page(program, QStringLiteral("'AddAllImages' in window.external"),
           QPoint(program.display.GetSize().width() * 7 / 8, program.display.GetSize().height() * 7 / 8))
{}

// Cards of another width than that of the pane are about to be made anew.
bool CFolderPane::WaitForRows(int count)
{
    return WaitFor(
        QStringLiteral("/ pictures? \\)/.test(document.querySelector('th').innerText) && %1 == %2 && "
                       "[...document.querySelectorAll('td a img')].filter(i => i.offsetHeight).every("
                       "i => !i.naturalWidth || Math.abs(i.naturalWidth - i.clientWidth) < 1)")
            .arg(rowCount)
            .arg(count));
}

QString CFolderPane::GetHeading()
{
    return Ask(QStringLiteral("document.querySelector('th').innerText")).toString().trimmed();
}

QPoint CFolderPane::PlaceInRect(const QString& elementExpression, const QString& x)
{
    return page.PlaceFrom(QStringLiteral("(r => Math.round(r.x + %1) + ' ' + Math.round(r.y + r.height / 2))"
                                         "(%2.getBoundingClientRect())")
                              .arg(x, elementExpression));
}

void PointToFolder(const QString& project, const QStringList& folders)
{
    QFile file(project);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    QString text = QString::fromUtf8(file.readAll());
    file.close();
    QString list = QStringLiteral("<project_folders recent_folder=\"%1\">").arg(folders[0].toHtmlEscaped());
    for (const QString& folder : folders) {
        list += QStringLiteral("<folder path=\"%1\"/>").arg(folder.toHtmlEscaped());
    }
    static const QRegularExpression former(
        QStringLiteral("<project_folders[^>]*/>|<project_folders.*?</project_folders>"));
    text.replace(former, list + QStringLiteral("</project_folders>"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text.toUtf8());
}
