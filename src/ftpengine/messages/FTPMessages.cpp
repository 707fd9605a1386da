#include "ftpengine/messages/FTPMessages.h"

CTaskResult::Kind CTaskResult::GetKind() const
{
    if (status != 0) {
        return Kind::NetworkFailure;
    }
    return reply.GetGroup() == 2 ? Kind::Success : Kind::ServerRefusal;
}
