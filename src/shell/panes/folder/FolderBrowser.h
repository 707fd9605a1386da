#pragma once

#include <QString>

class QWidget;

// Asks a person for a folder with pictures. current: where the dialog begins. Empty if none was chosen.
QString AskForPictureFolder(const QString& current, QWidget* parent);
