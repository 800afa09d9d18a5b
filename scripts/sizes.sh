#!/usr/bin/env bash
# Non-blank lines of C++ and QML: tests/ against the product; tests may be at most a third of both.
cd "$(dirname "$0")/.."
count() { find "$@" -type f \( -name '*.cpp' -o -name '*.h' -o -name '*.qml' \) -exec cat {} + | grep -c '[^[:space:]]'; }
tests=$(count tests)
product=$(count app language turtle canvas curriculum profile gallery ui)
echo "tests $tests, product $product, tests share $((100 * tests / (tests + product))) % (at most 33 %)"
[ $((3 * tests)) -le $((tests + product)) ]
