#pragma once

#include <QString>

// The split of "object.variable" at the first ".". Either part may be empty; neither is null. Thread-safe.
class CTemplateVariableName {
public:
    // Throws CTemplateParsingException if there is no ".".
    explicit CTemplateVariableName(const QString& text);

    const QString& GetObjectName() const { return objectName; }
    const QString& GetVariableName() const { return variableName; }

private:
    QString objectName;
    QString variableName;
};
