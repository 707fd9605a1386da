#pragma once

#include "document/pictures/PictureInfo.h"

// A picture file. Nothing of it is read but its last write time.
class CFilePictureInfo final : public CPictureInfo {
public:
    CFilePictureInfo(const QString& path, int32_t angle) : path(path), angle(angle) {}

    QString GetPath() override { return path; }
    QString GetThumbnailPath() override { return thumbnailPath; }
    // 0 for a file that could not be queried.
    DateValue GetDate() override { return date; }
    bool GetVariable(const QString& name, CVariant& out) override;
    void SetVariable(const QString& name, const CVariant& value) override { variables.Set(name, value); }
    int32_t GetAngle() const override { return angle; }
    void SetAngle(int32_t newAngle) override { angle = newAngle; }
    const CVariableMap& GetVariables() const override { return variables; }
    CVariableMap& GetVariables() override { return variables; }

    void SetThumbnailPath(const QString& newPath) { thumbnailPath = newPath; }
    void SetDate(DateValue newDate) { date = newDate; }

private:
    const QString path;
    QString thumbnailPath;
    CVariableMap variables;
    DateValue date = 0;
    int32_t angle;
};

// file_name, file_name_base and file_name_extension of a path, by a name without regard to case. False for
// any other name.
bool GetFileProperty(const QString& path, const QString& name, CVariant& out);
