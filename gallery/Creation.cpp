#include "gallery/Creation.h"

#include "profile/NameRules.h"

QString Creation::shownTitle() const
{
    return leftCharacters(title, maxTitleLength);
}
