#pragma once

#include <exception>
#include <string>

#include <QString>

#include "resources/StringTable.h"

// Base of all failures that the document, the templates, the generators and the effects report. Each has
// three texts: what happened, why, and what to do about it. Thrown by value, caught by reference.
class CExceptionBase : public std::exception {
public:
    virtual QString GetCaption() const = 0;
    virtual QString GetDescription() const = 0;
    virtual QString GetAdvice() const = 0;
};

class CGenericException : public CExceptionBase {
public:
    CGenericException(const QString& caption, const QString& description, const QString& advice);

    QString GetCaption() const override { return caption; }
    QString GetDescription() const override { return description; }
    QString GetAdvice() const override { return advice; }

    // Caption and description in UTF-8, for logs and test output.
    const char* what() const noexcept override { return narrowText.c_str(); }

private:
    QString caption;
    QString description;
    QString advice;
    std::string narrowText;
};

// A file that could not be opened or made. The caption names it.
class CFileException : public CGenericException {
public:
    // The three texts of the failure; the placeholder of the caption takes the path.
    struct Texts {
        StringId caption;
        StringId reason;
        StringId solution;
    };
    CFileException(const QString& path, const Texts& texts);
};

// The system's own text for a value of errno.
QString SystemErrorText(int errorNumber);

// A call of the operating system that failed: the caption says what was attempted, the description is the
// system's own text for its error, and the advice follows from that error.
class CWin32Exception : public CGenericException {
public:
    // errorNumber: a value of errno, taken right after the failed call.
    CWin32Exception(int errorNumber, const QString& message);

    int GetErrorNumber() const { return errorNumber; }

private:
    int errorNumber;
};

// A state that the program did not expect; the caption carries the place in the source that found it.
class CUnexpectedException : public CGenericException {
public:
    CUnexpectedException(const char* sourceFile, int line, const QString& description = QString());
};
