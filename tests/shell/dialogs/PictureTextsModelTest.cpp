#include "shell/dialogs/PictureTextsModel.h"

#include <gtest/gtest.h>

namespace {

using Column = CPictureTextsModel::Column;

std::vector<PictureTexts> ThreePictures()
{
    std::vector<PictureTexts> pictures;
    for (const char* name : {"a", "b", "c"}) {
        const QString text = QString::fromLatin1(name);
        pictures.push_back({.path = {},
                            .fileName = text + QStringLiteral(".jpg"),
                            .title = QStringLiteral("Title ") + text,
                            .description = text + QStringLiteral("1</br>") + text + QLatin1Char('2')});
    }
    return pictures;
}

class PictureTextsModel : public testing::Test {
protected:
    QString Shown(int row, Column column) const
    {
        return model.index(row, column).data(Qt::DisplayRole).toString();
    }
    bool Write(int row, Column column, const QString& text)
    {
        return model.setData(model.index(row, column), text, Qt::EditRole);
    }
    // "0 title=x description=y; "
    std::string Changes() const
    {
        QString changes;
        for (const PictureTextsChange& change : model.GetChanges()) {
            changes += QString::number(change.row);
            changes += change.title ? QStringLiteral(" title=") + *change.title : QString();
            changes += change.description ? QStringLiteral(" description=") + *change.description : QString();
            changes += QStringLiteral("; ");
        }
        return changes.toStdString();
    }

    CPictureTextsModel model{ThreePictures(), QSize(40, 30), nullptr};
};

} // namespace

TEST_F(PictureTextsModel, ShowsTextsWithTheirLines)
{
    EXPECT_EQ(model.rowCount(), 3);
    EXPECT_EQ(model.columnCount(), 4);
    EXPECT_EQ(Shown(1, Column::Title), QStringLiteral("Title b"));
    EXPECT_EQ(Shown(1, Column::Description), QStringLiteral("b1\nb2"));
    EXPECT_EQ(Shown(1, Column::FileName), QStringLiteral("b.jpg"));
    const QStringList expected = {QStringLiteral("Picture"), QStringLiteral("Title"),
                                  QStringLiteral("Description"), QStringLiteral("File name")};
    for (int column = 0; column < 4; ++column) {
        EXPECT_EQ(model.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString(), expected[column]);
    }
    EXPECT_EQ(Changes(), "");
}

TEST_F(PictureTextsModel, GivesBackWhatWasChangedAndNothingElse)
{
    EXPECT_TRUE(Write(0, Column::Title, QStringLiteral("New")));
    EXPECT_TRUE(Write(2, Column::Description, QStringLiteral("x\ny")));
    EXPECT_EQ(Changes(), "0 title=New; 2 description=x</br>y; ");
    EXPECT_TRUE(Write(2, Column::Title, QString()));
    EXPECT_EQ(Changes(), "0 title=New; 2 title= description=x</br>y; ");
    // As it was.
    EXPECT_TRUE(Write(0, Column::Title, QStringLiteral("other")));
    EXPECT_TRUE(Write(0, Column::Title, QStringLiteral("Title a")));
    EXPECT_TRUE(Write(2, Column::Description, QStringLiteral("c1\nc2")));
    EXPECT_EQ(Changes(), "2 title=; ");
}

TEST_F(PictureTextsModel, PicturesAndNamesAreNotWritten)
{
    EXPECT_FALSE(Write(0, Column::Thumbnail, QStringLiteral("x")));
    EXPECT_FALSE(Write(0, Column::FileName, QStringLiteral("x")));
    EXPECT_EQ(Shown(0, Column::FileName), QStringLiteral("a.jpg"));
    EXPECT_EQ(Changes(), "");
}

TEST_F(PictureTextsModel, ATitleHasOneLineAndBothHaveALimit)
{
    Write(0, Column::Title, QStringLiteral("one\r\ntwo"));
    EXPECT_EQ(Shown(0, Column::Title), QStringLiteral("one two"));
    Write(0, Column::Title, QString(2000, QLatin1Char('x')));
    EXPECT_EQ(Shown(0, Column::Title).size(), 1024);
    Write(0, Column::Description, QString(20000, QLatin1Char('x')));
    EXPECT_EQ(Shown(0, Column::Description).size(), 16192);
    Write(0, Column::Description, QString(20000, QLatin1Char('\n')));
    EXPECT_EQ(Shown(0, Column::Description).size(), 16192 / 2);
}

TEST_F(PictureTextsModel, ATableIsWrittenAsFarAsThereAreCells)
{
    const auto write = [this](int row, Column column, const QList<QStringList>& texts) {
        return model.SetTexts(model.index(row, column), texts);
    };
    EXPECT_EQ(write(0, Column::Title, {{"A", "B"}, {"C"}}), 0);
    EXPECT_EQ(Changes(), "0 title=A description=B; 1 title=C; ");
    EXPECT_EQ(write(1, Column::Description, {{"D", "name.jpg", "more"}, {"E"}, {"F"}, {"G"}}), 2);
    EXPECT_EQ(Changes(), "0 title=A description=B; 1 title=C description=D; 2 description=E; ");
    EXPECT_EQ(Shown(1, Column::FileName), QStringLiteral("b.jpg"));
}
