#pragma once

#include <string>

class CExceptionBase;
class CGallery;
class CTemplateParsingException;

// The pages that stand in a view in place of one that could not be made. Screen's thread.

// The page file of the gallery's current page with the place of the error.
std::string BuildTemplateErrorPage(const CTemplateParsingException& error, CGallery& gallery);

// What happened, why, and what to do about it.
std::string BuildFailurePage(const CExceptionBase& failure);
