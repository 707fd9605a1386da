#include "FolderPane.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <gtest/gtest.h>

namespace {

// Rows that are not filled yet count as well.
const QString rowCount = QStringLiteral(
    "[...document.querySelectorAll('tbody.block')].reduce((n, b) => n + (b.querySelector('.gap') ? "
    "b.querySelector('template').content.childElementCount : "
    "[...b.rows].filter(r => r.style.display != 'none').length), 0)");

QString InShownPage(const QString& expression)
{
    const QByteArray text = QJsonDocument(QJsonArray{expression}).toJson(QJsonDocument::Compact);
    return QStringLiteral("viewShell.evaluate(%1)").arg(QString::fromUtf8(text.mid(1, text.size() - 2)));
}

} // namespace

bool CFolderPane::Connect()
{
    if (probe && probe->IsConnected()) {
        return true;
    }
    for (const QString& address : CPageProbe::ListPages(program.GetDebugPort())) {
        auto candidate = std::make_unique<CPageProbe>(address);
        if (candidate->IsConnected() &&
            candidate->Evaluate(InShownPage(QStringLiteral("'AddAllImages' in window.external"))).toBool()) {
            probe = std::move(candidate);
            return true;
        }
    }
    return false;
}

QVariant CFolderPane::Ask(const QString& expression)
{
    return Connect() ? probe->Evaluate(InShownPage(expression)) : QVariant();
}

bool CFolderPane::WaitFor(const QString& condition)
{
    const bool holds = CDesktopProgram::WaitFor([&] { return Ask(condition).toBool(); });
    if (!holds) {
        program.TakePicture(QStringLiteral("failed-folder"));
    }
    return holds;
}

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

QPoint CFolderPane::GetOrigin()
{
    if (!origin.isNull()) {
        return origin;
    }
    Ask(QStringLiteral(
        "document.addEventListener('mousemove', e => { window.origin_ = (e.screenX - e.clientX) + "
        "' ' + (e.screenY - e.clientY); }, true); window.origin_ = ''"));
    const QSize screen = program.display.GetSize();
    const QPoint middle(screen.width() * 7 / 8, screen.height() * 7 / 8);
    int step = 0;
    CDesktopProgram::WaitFor([&] {
        program.MovePointer(middle + QPoint(++step % 2, 0));
        return !Ask(QStringLiteral("window.origin_")).toString().isEmpty();
    });
    const QStringList place = Ask(QStringLiteral("window.origin_")).toString().split(QLatin1Char(' '));
    origin = QPoint(place.value(0).toInt(), place.value(1).toInt());
    return origin;
}

QPoint CFolderPane::PlaceOf(const QString& elementExpression)
{
    const QString middle =
        QStringLiteral("(e => { if (!e) return ''; e.scrollIntoView({block: 'center', behavior: 'instant'}); "
                       "const r = e.getBoundingClientRect(); "
                       "return Math.round(r.x + r.width / 2) + ' ' + Math.round(r.y + r.height / 2); })(%1)")
            .arg(elementExpression);
    const QStringList place = Ask(middle).toString().split(QLatin1Char(' '));
    EXPECT_EQ(place.size(), 2) << "There is no " << qPrintable(elementExpression);
    return GetOrigin() + QPoint(place.value(0).toInt(), place.value(1).toInt());
}

QPoint CFolderPane::PlaceInRect(const QString& elementExpression, const QString& x)
{
    const QStringList place =
        Ask(QStringLiteral("(r => Math.round(r.x + %1) + ' ' + Math.round(r.y + r.height / 2))"
                           "(%2.getBoundingClientRect())")
                .arg(x, elementExpression))
            .toString()
            .split(QLatin1Char(' '));
    EXPECT_EQ(place.size(), 2) << "There is no " << qPrintable(elementExpression);
    return GetOrigin() + QPoint(place.value(0).toInt(), place.value(1).toInt());
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
    static const QRegularExpression former(QStringLiteral("<project_folders.*?</project_folders>"));
    text.replace(former, list + QStringLiteral("</project_folders>"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text.toUtf8());
}
