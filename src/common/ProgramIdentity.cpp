#include "common/ProgramIdentity.h"

QString GetProgramVersion()
{
    return QStringLiteral(VISTORAMA_VERSION);
}

QString GetApplicationId()
{
    return QStringLiteral(VISTORAMA_APPLICATION_ID);
}
