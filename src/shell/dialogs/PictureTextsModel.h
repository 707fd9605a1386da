#pragma once

#include <optional>
#include <vector>

#include <QAbstractTableModel>
#include <QSize>
#include <QString>

#include "shell/dialogs/PictureThumbnails.h"

// One picture of a gallery, or a child gallery that stands there.
struct PictureTexts {
    QString path;         // of the file; empty: it is no picture file
    int quarterTurns = 0; // clockwise
    QString fileName;     // as shown
    QString title;
    QString description; // as pages hold it, with "</br>" for a line end
};

// What a person has changed of it, in the same form; empty if the text was emptied.
struct PictureTextsChange {
    int row = 0;
    std::optional<QString> title;
    std::optional<QString> description;
};

// The texts of many pictures as a table, with their thumbnails. Owned by its dialog; screen's thread.
class CPictureTextsModel final : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { Thumbnail, Title, Description, FileName, ColumnCount };
    // Whether the row is no picture file: a truth value.
    static constexpr int IsNoFileRole = Qt::UserRole;
    // In UTF-16 units, as when a text is edited alone; of a description each line end counts as two.
    static constexpr int TitleLimit = 1024;
    static constexpr int DescriptionLimit = 16192;

    // thumbnail: in pixels of the screen.
    CPictureTextsModel(std::vector<PictureTexts> pictures, QSize thumbnail, QObject* parent);

    // Those rows' thumbnails are wanted first.
    void ShowRows(int first, int last) { thumbnails.Show(first, last); }

    // From that cell on to the right and down, as far as there are cells to write. Returns how many of the
    // rows are beyond the last picture.
    int SetTexts(const QModelIndex& first, const QList<QStringList>& texts);

    // In the order of rows.
    std::vector<PictureTextsChange> GetChanges() const;

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    // DecorationRole of a thumbnail: its QImage, without pixels if the picture can't be shown, or nothing as
    // long as it isn't made.
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    // A text that is too long is cut, and a title is put on one line.
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

private:
    struct Row {
        QString path;
        QString fileName;
        QString title;
        QString description;                // as shown
        std::optional<QString> formerTitle; // if it is another one now
        std::optional<QString> formerDescription;
    };

    QString GetText(const QModelIndex& index) const;
    QString GetToolTip(const QModelIndex& index) const;

    std::vector<Row> rows;
    CPictureThumbnails thumbnails;
};
