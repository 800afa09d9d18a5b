#pragma once

#include <QString>

// The longest name a child can give, in characters as people count them.
inline constexpr int maxNameLength = 24;

// The one cleaning rule for every name a child types: control and format characters
// dropped, white space runs become one blank, ends trimmed, at most 24 characters.
QString cleanName(const QString &text);

// How many characters a person would count in the text (an emoji sequence is one).
int characterCount(const QString &text);

// The first `count` characters as people count them.
QString leftCharacters(const QString &text, int count);
