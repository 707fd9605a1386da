#pragma once

#include <QString>

struct CTaskResult;

// What the result of a task says to a person: a head, and for a failure the whole conversation, the password
// included, so that nothing is hidden that may explain it. Lines end in "\r\n".
QString DescribeTaskResult(const CTaskResult& result);
