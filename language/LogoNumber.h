#pragma once

#include <QStringView>
#include <optional>

// Reads a whole token as a finite number by the C library's rules in the "C" locale,
// whatever locale the user runs in.
std::optional<double> readLogoNumber(QStringView token);
