#pragma once

#include <set>

#include <QString>
#include <QStringList>

// Which pictures of a view are selected: by their keys, so that a selection outlives changes of the list. The
// rules are those of lists everywhere: a click selects one picture alone, with Ctrl it takes one more in or
// out, with Shift everything from the last click to this one. A plain value; owned by the view.
class CPictureSelection {
public:
    enum class Way { Only, Toggle, Range };

    // key: of the picture that was clicked, one of the order. order: of all pictures that can be selected.
    void Click(const QString& key, Way way, const QStringList& order);
    // keepOthers: those that are selected stay so.
    void Select(const QStringList& chosen, bool keepOthers);
    // Those that are not among these any more leave the selection.
    void Keep(const QStringList& order);
    void Clear();

    bool IsEmpty() const { return keys.empty(); }
    int GetCount() const { return static_cast<int>(keys.size()); }
    bool Has(const QString& key) const { return keys.count(key) != 0; }
    const std::set<QString>& GetKeys() const { return keys; }

private:
    std::set<QString> keys;
    QString anchor; // where a range begins
};
