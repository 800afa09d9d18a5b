#include "curriculum/Mission.h"

Mission lesson(const QString &title, const QString &subtitle, const QString &goal, const QString &starter,
               const QString &hint, const QString &solution, const QString &prize)
{
    return Mission{title, subtitle, goal, starter,
                   {hint, QStringLiteral("Here is one way. Read it, then try it:\n") + solution}, solution, prize};
}
