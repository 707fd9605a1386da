#pragma once

#include <string>
#include <vector>

#include <QSize>
#include <QString>
#include <QStringList>

#include "content/FolderPictures.h"

class CViewFolderImageIterator;

// The pages of the folder view. Screen's thread.

// The size of a card in a view of that width, in pixels.
QSize CardSize(int viewWidth);

// While the first thumbnails are being made.
std::string BuildLoadingPage();
std::string BuildProgressPage(int count);
// Scripts that change the progress page in place. cards: thumbnails to append.
QString SetCountScript(int count);
QString AppendCardsScript(const std::vector<FolderCard>& cards);

struct FolderPage {
    QString folder; // full path
    QSize card;
};
// The list of the pictures that the iterator does not hide. Throws CExceptionBase if there is no place for
// the strips of buttons.
std::string BuildListPage(const FolderPage& page, CViewFolderImageIterator& iterator);
// Takes the rows of these pictures out of the list.
QString HideRowsScript(const std::vector<int32_t>& indices);
QString HideAllRowsScript();

// A text in place of a list.
std::string BuildTextPage(const QString& heading, const QStringList& paragraphs);
// Why there is no list: the folder is not there or may not be read.
std::string BuildStatePage(const QString& folder, FolderPictures::State state);
// why: a line for each thing that is known.
std::string BuildFailurePage(const QString& folder, const QStringList& why);

// "/a/b/" gives "/a/b"; the root stays.
QString WithoutTrailingSeparator(const QString& folder);
// The last name of a folder; the folder itself if it has none.
QString FolderName(const QString& folder);
