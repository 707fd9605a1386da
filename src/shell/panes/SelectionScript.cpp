#include "shell/panes/SelectionScript.h"

#include <map>

#include <QJsonArray>
#include <QJsonDocument>

#include "resources/Resources.h"

QString SelectionScript(const SelectionOptions& options)
{
    return QString::fromUtf8(FindResource(QStringLiteral("selection"), QStringLiteral("js"))) +
           QStringLiteral("\npreviewSelection.configure({clicksSelect:%1})")
               .arg(options.clicksSelect ? QStringLiteral("true") : QStringLiteral("false"));
}

QString MarkScript(const QStringList& ids)
{
    const QByteArray list = QJsonDocument(QJsonArray::fromStringList(ids)).toJson(QJsonDocument::Compact);
    return QStringLiteral("previewSelection.show(%1)").arg(QString::fromUtf8(list));
}

bool ApplySelection(CPictureSelection& selection, const QStringList& keys, const QString& way,
                    const QStringList& order)
{
    using Way = CPictureSelection::Way;
    static const std::map<QString, Way> ways = {{QStringLiteral("only"), Way::Only},
                                                {QStringLiteral("toggle"), Way::Toggle},
                                                {QStringLiteral("range"), Way::Range}};
    const bool isMore = way == QStringLiteral("more");
    const auto click = ways.find(way);
    if (click != ways.end() && keys.size() == 1) {
        selection.Click(keys[0], click->second, order);
    } else if (isMore || way == QStringLiteral("these")) {
        selection.Select(keys, isMore);
    } else {
        return false;
    }
    return true;
}
