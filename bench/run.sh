#!/usr/bin/env bash
# The benchmarks, in one run: builds with -DOOXML_BUILD_BENCH=ON (Release),
# writes the large documents, then for each measures the stages of reading
# every XML part (ooxml-bench: Load alone, ReadXML alone, ...) and the whole
# `ooxml-dump --all`, with peak memory.
#
#   bench/run.sh [BUILD_DIR]        (default build-bench)
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build-bench}
cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=Release -DOOXML_BUILD_BENCH=ON -DOOXML_BUILD_TESTS=OFF >/dev/null
cmake --build "$build" -j "$(nproc)" --target ooxml-bench ooxml-dump
data="$build/bench-data"
[ -f "$data/large.pptx" ] || python3 bench/make_large.py "$data"
for file in "$data"/large.xlsx "$data"/large.docx "$data"/large.pptx; do
    echo
    echo "== $file"
    "$build/bench/ooxml-bench" --repeat 3 "$file"
    /usr/bin/time -f "ooxml-dump --all: %e s wall, %M KB peak memory" \
        "$build/apps/ooxml-dump" --all "$file" | tail -1
done
