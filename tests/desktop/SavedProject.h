#pragma once

#include <map>
#include <vector>

#include <QString>
#include <QStringList>

// A project's file as it lies on the disk.
struct SavedProject {
    struct Picture {
        QString name; // of its file; empty for a child gallery
        int angle = 0;
        std::map<QString, QString> variables;
    };
    struct Gallery {
        std::vector<Picture> pictures;
        std::map<QString, QString> style; // the attributes of the element

        const Picture* Find(const QString& name) const;
        QStringList GetNames() const;
    };

    // Nothing for a file that can't be read.
    explicit SavedProject(const QString& path);

    std::map<int, Gallery> galleries;
    int currentGallery = -1;
    QString text;
};

// Makes that gallery the current one of a project's file, in which the first one is.
void ChooseGallery(const QString& project, int gallery);
