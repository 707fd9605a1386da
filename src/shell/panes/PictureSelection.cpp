#include "shell/panes/PictureSelection.h"

#include <algorithm>

void CPictureSelection::Click(const QString& key, Way way, const QStringList& order)
{
    const qsizetype from = order.indexOf(anchor);
    const qsizetype to = order.indexOf(key);
    if (way == Way::Range && from != -1 && to != -1) {
        // The beginning stays, so that the next click with Shift makes the range longer or shorter.
        Select(order.mid(std::min(from, to), std::abs(to - from) + 1), false);
        return;
    }
    anchor = key;
    if (way != Way::Toggle) {
        keys = {key};
    } else if (keys.erase(key) == 0) {
        keys.insert(key);
    }
}

void CPictureSelection::Select(const QStringList& chosen, bool keepOthers)
{
    if (!keepOthers) {
        keys.clear();
    }
    keys.insert(chosen.begin(), chosen.end());
}

void CPictureSelection::Keep(const QStringList& order)
{
    const std::set<QString> there(order.begin(), order.end());
    for (auto key = keys.begin(); key != keys.end();) {
        key = there.count(*key) != 0 ? std::next(key) : keys.erase(key);
    }
}

void CPictureSelection::Clear()
{
    keys.clear();
    anchor.clear();
}
