#include "shell/dialogs/DlgPictureTexts.h"

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QEventLoop>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPainter>
#include <QPlainTextEdit>
#include <QTableView>
#include <QTimer>

#include "shell_support/DialogTools.h"
#include "support/ScratchFolder.h"

namespace {

using Column = CPictureTextsModel::Column;

constexpr Column Title = Column::Title;
constexpr Column Description = Column::Description;
constexpr Column FileName = Column::FileName;

std::vector<PictureTexts> Pictures(int count)
{
    std::vector<PictureTexts> pictures;
    for (int i = 0; i < count; ++i) {
        pictures.push_back({.path = QStringLiteral("/nowhere/%1.jpg").arg(i),
                            .fileName = QStringLiteral("%1.jpg").arg(i),
                            .title = QStringLiteral("t%1").arg(i),
                            .description = QStringLiteral("d%1").arg(i)});
    }
    return pictures;
}

} // namespace

class DlgPictureTexts : public testing::Test {
protected:
    void Open(std::vector<PictureTexts> pictures)
    {
        dialog = std::make_unique<CDlgPictureTexts>(std::move(pictures), nullptr);
        dialog->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
        table = &Find<QTableView>(*dialog, "pictures");
    }

    // To what has the focus: the table, or the editor of a cell.
    void Press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        ASSERT_NE(QApplication::focusWidget(), nullptr);
        QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key), modifiers);
    }
    // The first character opens an editor, which takes the others.
    void Type(const char* text)
    {
        for (const QChar character : QString::fromUtf8(text)) {
            QTest::keyClicks(QApplication::focusWidget(), character);
        }
    }

    void GoTo(int row, Column column)
    {
        table->selectionModel()->setCurrentIndex(table->model()->index(row, column),
                                                 QItemSelectionModel::ClearAndSelect);
    }
    void Select(int top, Column left, int bottom, Column right)
    {
        GoTo(top, left);
        const QAbstractItemModel& model = *table->model();
        table->selectionModel()->select({model.index(top, left), model.index(bottom, right)},
                                        QItemSelectionModel::ClearAndSelect);
    }
    void Paste(const char* text)
    {
        QGuiApplication::clipboard()->setText(QString::fromUtf8(text));
        Press(Qt::Key_V, Qt::ControlModifier);
    }
    std::string Clipboard() const { return QGuiApplication::clipboard()->text().toStdString(); }

    std::string Cell(int row, Column column) const
    {
        return table->model()->index(row, column).data().toString().toStdString();
    }
    // "1/2": row and column of the current cell.
    std::string Place() const
    {
        const QModelIndex cell = table->currentIndex();
        return std::to_string(cell.row()) + '/' + std::to_string(cell.column());
    }
    bool IsEditing() const { return QApplication::focusWidget() != table; }

    QImage WaitForThumbnail(int row)
    {
        QEventLoop loop;
        const QModelIndex cell = table->model()->index(row, Column::Thumbnail);
        const auto look = [&] {
            if (cell.data(Qt::DecorationRole).isValid()) {
                loop.quit();
            }
        };
        QObject::connect(table->model(), &QAbstractItemModel::dataChanged, &loop, look);
        QTimer::singleShot(0, &loop, look);
        QTimer::singleShot(60'000, &loop, &QEventLoop::quit);
        loop.exec();
        return cell.data(Qt::DecorationRole).value<QImage>();
    }

    std::unique_ptr<CDlgPictureTexts> dialog;
    QTableView* table = nullptr;
};

TEST_F(DlgPictureTexts, TypingTakesThePlaceOfATextAndEnterGoesDown)
{
    Open(Pictures(3));
    EXPECT_EQ(Place(), "0/1");
    Type("New");
    EXPECT_TRUE(IsEditing());
    EXPECT_EQ(Cell(0, Title), "t0");
    Press(Qt::Key_Return);
    EXPECT_FALSE(IsEditing());
    EXPECT_EQ(Cell(0, Title), "New");
    EXPECT_EQ(Place(), "1/1");
    GoTo(1, Description);
    Type("more");
    Press(Qt::Key_Enter, Qt::KeypadModifier);
    EXPECT_EQ(Cell(1, Description), "more");
    EXPECT_EQ(Place(), "2/2");
    Type("x");
    Press(Qt::Key_Return); // the last one
    EXPECT_EQ(Place(), "2/2");
    EXPECT_TRUE(dialog->isVisible());
    const std::vector<PictureTextsChange> changes = dialog->GetChanges();
    ASSERT_EQ(changes.size(), 3u);
    EXPECT_EQ(changes[0].title, QStringLiteral("New"));
    EXPECT_EQ(changes[0].description, std::nullopt);
    EXPECT_EQ(changes[1].row, 1);
    EXPECT_EQ(changes[1].description, QStringLiteral("more"));
}

TEST_F(DlgPictureTexts, EnterAndArrowsMoveThroughTheCells)
{
    Open(Pictures(3));
    const struct {
        int key;
        Qt::KeyboardModifier modifier;
        const char* place;
    } steps[] = {
        {Qt::Key_Return, Qt::NoModifier, "1/1"}, {Qt::Key_Return, Qt::ShiftModifier, "0/1"},
        {Qt::Key_Down, Qt::NoModifier, "1/1"},   {Qt::Key_Right, Qt::NoModifier, "1/2"},
        {Qt::Key_Right, Qt::NoModifier, "1/3"},  {Qt::Key_Right, Qt::NoModifier, "1/3"},
        {Qt::Key_Up, Qt::NoModifier, "0/3"},     {Qt::Key_Left, Qt::NoModifier, "0/2"},
        {Qt::Key_Left, Qt::NoModifier, "0/1"},   {Qt::Key_Left, Qt::NoModifier, "0/1"},
        {Qt::Key_End, Qt::NoModifier, "0/3"},    {Qt::Key_Home, Qt::NoModifier, "0/1"},
    };
    for (const auto& step : steps) {
        Press(step.key, step.modifier);
        EXPECT_EQ(Place(), step.place) << step.key;
    }
    EXPECT_TRUE(dialog->GetChanges().empty());
}

TEST_F(DlgPictureTexts, TabGoesFromTitleToDescriptionAndToTheNextRow)
{
    Open(Pictures(2));
    for (const char* place : {"0/2", "1/1", "1/2"}) {
        Press(Qt::Key_Tab);
        EXPECT_EQ(Place(), place);
    }
    for (const char* place : {"1/1", "0/2", "0/1"}) {
        Press(Qt::Key_Backtab, Qt::ShiftModifier);
        EXPECT_EQ(Place(), place);
    }
    // While a text is being typed as well.
    Type("A");
    Press(Qt::Key_Tab);
    Type("B");
    Press(Qt::Key_Tab);
    Type("C");
    EXPECT_EQ(Cell(0, Title), "A");
    EXPECT_EQ(Cell(0, Description), "B");
    Press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(Cell(1, Title), "C");
    EXPECT_EQ(Place(), "0/2");
    // From a file name on.
    GoTo(0, FileName);
    Press(Qt::Key_Tab);
    EXPECT_EQ(Place(), "1/1");
}

TEST_F(DlgPictureTexts, TabLeavesTheTableAtItsEnds)
{
    Open(Pictures(2));
    GoTo(1, Description);
    Press(Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget()->objectName(), QStringLiteral("ok"));
    table->setFocus();
    Type("typed");
    Press(Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget()->objectName(), QStringLiteral("ok"));
    EXPECT_EQ(Cell(1, Description), "typed");
    table->setFocus();
    GoTo(0, Title);
    Press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(QApplication::focusWidget()->objectName(), QStringLiteral("cancel"));
    // From the middle.
    table->setFocus();
    Press(Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_EQ(QApplication::focusWidget()->objectName(), QStringLiteral("ok"));
}

TEST_F(DlgPictureTexts, F2AndADoubleClickGoOnWithAText)
{
    Open(Pictures(2));
    Press(Qt::Key_F2);
    EXPECT_TRUE(IsEditing());
    Type("!");
    Press(Qt::Key_Return);
    EXPECT_EQ(Cell(0, Title), "t0!");
    const QRect place = table->visualRect(table->model()->index(1, Description));
    QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, place.center());
    QTest::mouseDClick(table->viewport(), Qt::LeftButton, {}, place.center());
    ASSERT_TRUE(IsEditing());
    Type("!");
    Press(Qt::Key_Return);
    EXPECT_EQ(Cell(1, Description), "d1!");
}

TEST_F(DlgPictureTexts, EscapeGivesUpTheCellOnly)
{
    Open(Pictures(2));
    for (const Column column : {Title, Description}) {
        GoTo(0, column);
        Type("x");
        EXPECT_TRUE(IsEditing());
        Press(Qt::Key_Escape);
        EXPECT_FALSE(IsEditing());
        EXPECT_TRUE(dialog->isVisible());
    }
    EXPECT_TRUE(dialog->GetChanges().empty());
    Press(Qt::Key_Escape);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), QDialog::Rejected);
}

TEST_F(DlgPictureTexts, ADescriptionKeepsItsLinesAndTakesMore)
{
    std::vector<PictureTexts> pictures = Pictures(2);
    pictures[0].description = QStringLiteral("one</br>two");
    Open(std::move(pictures));
    GoTo(0, Description);
    Press(Qt::Key_F2);
    Press(Qt::Key_Return);
    EXPECT_TRUE(dialog->GetChanges().empty());
    GoTo(0, Description);
    Press(Qt::Key_F2);
    Press(Qt::Key_Return, Qt::ShiftModifier);
    Type("three");
    Press(Qt::Key_Return, Qt::AltModifier);
    Type("four");
    Press(Qt::Key_Return);
    EXPECT_EQ(Cell(0, Description), "one\ntwo\nthree\nfour");
    ASSERT_EQ(dialog->GetChanges().size(), 1u);
    EXPECT_EQ(dialog->GetChanges()[0].description, QStringLiteral("one</br>two</br>three</br>four"));
    EXPECT_EQ(Place(), "1/2");
}

// A page may hold a text that was made elsewhere and is longer than what can be typed.
TEST_F(DlgPictureTexts, ATextThatIsOnlyLookedAtStaysWhole)
{
    std::vector<PictureTexts> pictures = Pictures(1);
    pictures[0].title = QString(3000, QLatin1Char('x'));
    pictures[0].description = QString(30000, QLatin1Char('x'));
    Open(std::move(pictures));
    Press(Qt::Key_F2);
    Press(Qt::Key_Tab);
    Press(Qt::Key_F2);
    Press(Qt::Key_Return);
    EXPECT_TRUE(dialog->GetChanges().empty());
}

TEST_F(DlgPictureTexts, DeleteEmptiesTheSelectedCells)
{
    Open(Pictures(3));
    Select(0, Title, 1, FileName);
    Press(Qt::Key_Delete);
    EXPECT_EQ(Cell(0, Title) + Cell(0, Description) + Cell(1, Title) + Cell(1, Description), "");
    EXPECT_EQ(Cell(1, FileName), "1.jpg");
    EXPECT_EQ(Cell(2, Title), "t2");
    const std::vector<PictureTextsChange> changes = dialog->GetChanges();
    ASSERT_EQ(changes.size(), 2u);
    ASSERT_TRUE(changes[0].title && changes[1].description);
    EXPECT_EQ(*changes[0].title, QString());
}

TEST_F(DlgPictureTexts, SelectedCellsAreCopiedAsATable)
{
    std::vector<PictureTexts> pictures = Pictures(3);
    pictures[1].description = QStringLiteral("say \"hi\"</br>to all");
    Open(std::move(pictures));
    Select(0, Title, 1, FileName);
    Press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(Clipboard(), "t0\td0\t0.jpg\nt1\t\"say \"\"hi\"\"\nto all\"\t1.jpg");
    EXPECT_TRUE(dialog->GetChanges().empty());
    Select(2, Title, 2, Description);
    Press(Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(Clipboard(), "t2\td2");
    EXPECT_EQ(Cell(2, Title) + Cell(2, Description), "");
    Press(Qt::Key_A, Qt::ControlModifier);
    Press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(Clipboard(), "t0\td0\t0.jpg\nt1\t\"say \"\"hi\"\"\nto all\"\t1.jpg\n\t\t2.jpg");
}

TEST_F(DlgPictureTexts, LinesAreSelectedByMouseAndShift)
{
    Open(Pictures(3));
    const auto clickAt = [this](int row, Column column, Qt::KeyboardModifier modifier) {
        QTest::mouseClick(table->viewport(), Qt::LeftButton, modifier,
                          table->visualRect(table->model()->index(row, column)).center());
    };
    clickAt(0, Column::Thumbnail, Qt::NoModifier);
    EXPECT_EQ(Place(), "0/1");
    clickAt(1, Title, Qt::NoModifier);
    clickAt(2, Description, Qt::ShiftModifier);
    Press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(Clipboard(), "t1\td1\nt2\td2");
    // From where the person is, whatever way has led there.
    clickAt(0, Column::Thumbnail, Qt::NoModifier);
    Press(Qt::Key_Return);
    Press(Qt::Key_Down, Qt::ShiftModifier);
    Press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(Clipboard(), "t1\nt2");
    Press(Qt::Key_Home, Qt::ControlModifier);
    Press(Qt::Key_Tab);
    Press(Qt::Key_Down, Qt::ShiftModifier);
    Press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(Clipboard(), "d0\nd1");
    Press(Qt::Key_Home, Qt::ControlModifier);
    Type("x");
    Press(Qt::Key_Return);
    Press(Qt::Key_Down, Qt::ShiftModifier);
    Press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(Clipboard(), "t1\nt2");
}

TEST_F(DlgPictureTexts, LinesOfATableProgramArePasted)
{
    Open(Pictures(4));
    GoTo(1, Title);
    Paste("A\tB\r\n\"C\"\"\"\t\"D1\r\nD2\"\r\n");
    EXPECT_EQ(Cell(0, Title), "t0");
    EXPECT_EQ(Cell(1, Title), "A");
    EXPECT_EQ(Cell(1, Description), "B");
    EXPECT_EQ(Cell(2, Title), "C\"");
    EXPECT_EQ(Cell(2, Description), "D1\nD2");
    EXPECT_EQ(Cell(3, Title), "t3");
    EXPECT_FALSE(Find<QLabel>(*dialog, "message").isVisible());
    // What was pasted is selected.
    Press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(Clipboard(), "A\tB\n\"C\"\"\"\t\"D1\nD2\"");
}

TEST_F(DlgPictureTexts, PastingEndsWithTheListAndSaysSo)
{
    Open(Pictures(2));
    GoTo(1, Description);
    Paste("A\tnot here\nB\nC\n");
    EXPECT_EQ(Cell(1, Description), "A");
    EXPECT_EQ(Cell(1, FileName), "1.jpg");
    const auto& message = Find<QLabel>(*dialog, "message");
    EXPECT_TRUE(message.isVisible());
    EXPECT_EQ(message.text(),
              QStringLiteral("2 lines of the pasted text didn't fit: the list ends before them."));
    Paste("A\nB");
    EXPECT_EQ(message.text(),
              QStringLiteral("One line of the pasted text didn't fit: the list ends before it."));
    Paste("A");
    EXPECT_FALSE(message.isVisible());
    EXPECT_TRUE(Find<QLabel>(*dialog, "hint").isVisible());
    GoTo(0, FileName);
    Paste("A\nB");
    EXPECT_EQ(Cell(0, FileName), "0.jpg");
    EXPECT_EQ(Cell(0, Title), "t0");
}

TEST_F(DlgPictureTexts, OneTextIsPastedIntoAllSelectedCells)
{
    Open(Pictures(3));
    Select(0, Title, 1, Description);
    Paste("x");
    EXPECT_EQ(Cell(0, Title) + Cell(0, Description) + Cell(1, Title) + Cell(1, Description), "xxxx");
    EXPECT_EQ(Cell(2, Title), "t2");
}

TEST_F(DlgPictureTexts, AFieldThatIsBeingTypedHasTheClipboardForItself)
{
    Open(Pictures(2));
    GoTo(0, Description);
    Type("x");
    Paste("A\tB\nC");
    Press(Qt::Key_Return);
    EXPECT_EQ(Cell(0, Description), "xA\tB\nC");
    EXPECT_EQ(Cell(1, Description), "d1");
}

TEST_F(DlgPictureTexts, ControlDFillsTheCellsBelowTheFirst)
{
    Open(Pictures(4));
    Select(1, Title, 3, Description);
    Press(Qt::Key_D, Qt::ControlModifier);
    EXPECT_EQ(Cell(0, Title), "t0");
    for (const int row : {1, 2, 3}) {
        EXPECT_EQ(Cell(row, Title), "t1");
        EXPECT_EQ(Cell(row, Description), "d1");
    }
    ASSERT_EQ(dialog->GetChanges().size(), 2u);
}

TEST_F(DlgPictureTexts, TheMenuHasTheSameCommands)
{
    Open(Pictures(2));
    QStringList commands;
    for (const QAction* action : table->actions()) {
        commands += QString(action->text()).remove(QLatin1Char('&')) + QLatin1Char(' ') +
                    action->shortcut().toString();
    }
    EXPECT_EQ(commands.join(QLatin1Char('|')),
              QStringLiteral("Cut Ctrl+X|Copy Ctrl+C|Paste Ctrl+V|Delete Del|Fill down Ctrl+D"));
    table->actions().at(3)->trigger();
    EXPECT_EQ(Cell(0, Title), "");
}

TEST_F(DlgPictureTexts, OkAndControlEnterTakeWhatIsBeingTyped)
{
    for (const bool byKey : {false, true}) {
        Open(Pictures(2));
        GoTo(1, Description);
        Type("typed");
        if (byKey) {
            Press(Qt::Key_Return, Qt::ControlModifier);
        } else {
            Click(*dialog, "ok");
        }
        EXPECT_EQ(dialog->result(), QDialog::Accepted);
        EXPECT_FALSE(dialog->isVisible());
        ASSERT_EQ(dialog->GetChanges().size(), 1u);
        EXPECT_EQ(dialog->GetChanges()[0].description, QStringLiteral("typed"));
    }
    Open(Pictures(1));
    Press(Qt::Key_Enter, Qt::ControlModifier);
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
}

TEST_F(DlgPictureTexts, LeavingWithChangesAsksFirst)
{
    const struct {
        const char* button;
        bool isVisible;
        int result;
    } rows[] = {
        {"Go on editing", true, QDialog::Rejected},
        {"Keep", false, QDialog::Accepted},
        {"Discard", false, QDialog::Rejected},
    };
    for (const auto& row : rows) {
        Open(Pictures(2));
        Type("New");
        Press(Qt::Key_Return);
        const CMessageAnswer answer{QString::fromLatin1(row.button)};
        Press(Qt::Key_Escape);
        EXPECT_EQ(answer.GetText(), QStringLiteral("Keep the changes?"));
        EXPECT_EQ(dialog->isVisible(), row.isVisible) << row.button;
        EXPECT_EQ(dialog->result(), row.result) << row.button;
        EXPECT_EQ(dialog->GetChanges().size(), 1u);
    }
}

TEST_F(DlgPictureTexts, TheQuestionIsAskedForAClosedWindowAndAnOpenCellAndEscapeGoesOn)
{
    Open(Pictures(2));
    Type("New");
    CModalAnswer answer([](QWidget& box) { QTest::keyClick(&box, Qt::Key_Escape); });
    dialog->close();
    EXPECT_TRUE(answer.WasAsked());
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(Cell(0, Title), "New");
    const CMessageAnswer discard(QStringLiteral("Discard"));
    Click(*dialog, "cancel");
    EXPECT_FALSE(dialog->isVisible());
}

TEST_F(DlgPictureTexts, ThumbnailsComeToTheRowsOnTheScreen)
{
    const CScratchFolder scratch;
    const QString path = scratch.Path(QStringLiteral("a.png"));
    QImage image(60, 40, QImage::Format_RGB32);
    image.fill(Qt::red);
    ASSERT_TRUE(image.save(path));
    std::vector<PictureTexts> pictures = Pictures(2000);
    for (PictureTexts& picture : pictures) {
        picture.path = path;
    }
    Open(std::move(pictures));
    EXPECT_EQ(WaitForThumbnail(0).pixel(30, 20), 0xFFFF0000);
    EXPECT_EQ(table->grab().toImage().pixelColor(table->columnWidth(0) / 2, 60), QColor(Qt::red));
    Press(Qt::Key_End, Qt::ControlModifier);
    EXPECT_EQ(WaitForThumbnail(1999).pixel(30, 20), 0xFFFF0000);
    EXPECT_FALSE(table->model()->index(0, Column::Thumbnail).data(Qt::DecorationRole).isValid());
}

TEST_F(DlgPictureTexts, LooksWellInLightAndDark)
{
    const QString samples = QStringLiteral(SAMPLE_FOLDER);
    std::vector<PictureTexts> pictures;
    const QStringList names = QDir(samples).entryList({QStringLiteral("*.jpg")}, QDir::Files);
    ASSERT_GE(names.size(), 8);
    for (const QString& name : names) {
        pictures.push_back(
            {.path = samples + QLatin1Char('/') + name,
             .quarterTurns = static_cast<int>(pictures.size() % 2),
             .fileName = name,
             .title = name.chopped(4),
             .description = QStringLiteral("First line of %1</br>and a second one.").arg(name)});
    }
    pictures[1].description =
        QStringLiteral("A long description that needs several lines of the cell. ").repeated(4);
    pictures[2].path = QStringLiteral("/nowhere/gone.jpg");
    pictures[3] = {.path = {},
                   .quarterTurns = 0,
                   .fileName = {},
                   .title = QStringLiteral("Mountains"),
                   .description = {}};
    Open(std::move(pictures));
    WaitForThumbnail(0);
    WaitForThumbnail(2);
    WaitForThumbnail(6);
    GoTo(4, Title);
    KeepPictures(*dialog, QStringLiteral("picture-texts"));
    Select(0, Title, 2, Description);
    KeepPictures(*dialog, QStringLiteral("picture-texts-selected"));
    GoTo(4, Description);
    Press(Qt::Key_F2);
    Press(Qt::Key_Return, Qt::ShiftModifier);
    Type("A third line is typed.");
    KeepPictures(*dialog, QStringLiteral("picture-texts-editing"));
    EXPECT_TRUE(IsEditing());
    Press(Qt::Key_Return);
    GoTo(static_cast<int>(names.size()) - 1, Description);
    Paste("A\nB\nC");
    KeepPictures(*dialog, QStringLiteral("picture-texts-message"));
    Press(Qt::Key_F2);
    KeepPictures(*dialog, QStringLiteral("picture-texts-last"));
    Press(Qt::Key_Escape);
}

TEST_F(DlgPictureTexts, IsUsable)
{
    Open(Pictures(1));
    ExpectUsable(*dialog, QStringLiteral("picture-texts-one"));
}
