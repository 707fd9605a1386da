#include "common/NamedFile.h"

#include <QFile>

#include "support/ScratchFolder.h"

namespace {

// "found PATH", "found PATH otherwise" for another case, "missing" or "leads out". Seen from "root/a".
QString Look(const CScratchFolder& scratch, const QString& name)
{
    const QString root = scratch.Path(QStringLiteral("root"));
    const NamedFile file = FindNamedFile(root + QStringLiteral("/a/"), name, root);
    switch (file.state) {
    case NamedFile::State::Found:
        return QStringLiteral("found ") + file.path.mid(root.size() + 1) +
               (file.differsInCase ? QStringLiteral(" otherwise") : QString());
    case NamedFile::State::Missing:
        return QStringLiteral("missing");
    case NamedFile::State::LeadsOut:
        break;
    }
    return QStringLiteral("leads out");
}

} // namespace

TEST(NamedFile, ReachesWhatLiesBelowTheRootOnly)
{
    const CScratchFolder scratch;
    scratch.Write(QStringLiteral("outside.txt"), "");
    scratch.Write(QStringLiteral("root/a/x.txt"), "");
    scratch.Write(QStringLiteral("root/a/back\\slash.txt"), "");
    scratch.Write(QStringLiteral("root/B/Sub/y.txt"), "");
    scratch.Write(QStringLiteral("root/b2/y.txt"), "");
    scratch.Write(QStringLiteral("rootless/z.txt"), "");
    QFile::link(scratch.Path(QStringLiteral("outside.txt")), scratch.Path(QStringLiteral("root/a/out")));
    QFile::link(scratch.Path(), scratch.Path(QStringLiteral("root/up")));
    QFile::link(scratch.Path(QStringLiteral("root/B")), scratch.Path(QStringLiteral("root/a/in")));
    QFile::link(scratch.Path(QStringLiteral("nowhere")), scratch.Path(QStringLiteral("root/a/dangling")));
    const struct {
        const char* name;
        const char* expected;
    } rows[] = {
        {"x.txt", "found a/x.txt"},
        {"X.TXT", "found a/x.txt otherwise"},
        {"./x.txt", "found a/x.txt"},
        {"../B/Sub/y.txt", "found B/Sub/y.txt"},
        {"../b/SUB/y.txt", "found B/Sub/y.txt otherwise"},
        {"..\\B\\Sub", "found B/Sub"},
        {"back\\slash.txt", "found a/back\\slash.txt"},
        {"in/Sub/y.txt", "found a/in/Sub/y.txt"},
        {"", "missing"},
        {"none", "missing"},
        {"none/../x.txt", "found a/x.txt"},
        {"dangling", "missing"},
        {"..", "leads out"},
        {"../../outside.txt", "leads out"},
        {"../../rootless/z.txt", "leads out"},
        {"..\\..\\outside.txt", "leads out"},
        {"/etc/passwd", "leads out"},
        {"\\etc\\passwd", "leads out"},
        {"C:\\x.txt", "leads out"},
        {"out", "leads out"},
        {"../up/outside.txt", "leads out"},
        {"../up", "leads out"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Look(scratch, QString::fromUtf8(row.name)), QString::fromUtf8(row.expected)) << row.name;
    }
}

TEST(NamedFile, ARootThatIsALinkItselfIsNoWayOut)
{
    const CScratchFolder scratch;
    scratch.Write(QStringLiteral("real/a.txt"), "");
    QFile::link(scratch.Path(QStringLiteral("real")), scratch.Path(QStringLiteral("link")));
    const QString root = scratch.Path(QStringLiteral("link"));
    EXPECT_EQ(FindNamedFile(root, QStringLiteral("a.txt"), root).state, NamedFile::State::Found);
}
