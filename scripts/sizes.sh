#!/usr/bin/env bash
# Non-blank lines of every file under tests/ (goldens and CMake files too) against the product's C++ and QML;
# tests may be at most a third of both.
cd "$(dirname "$0")/.."
nonblank() { find "$@" -exec cat {} + | grep -c '[^[:space:]]'; }
count() { nonblank "$@" -type f \( -name '*.cpp' -o -name '*.h' -o -name '*.qml' \); }
tests=$(nonblank tests -type f)
product=$(count app language turtle canvas curriculum profile gallery ui)
echo "tests $tests, product $product, tests share $((100 * tests / (tests + product))) % (at most 33 %)"
[ $((3 * tests)) -le $((tests + product)) ]
