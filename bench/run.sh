#!/usr/bin/env bash
# The benchmarks, in one run: builds ooxml-bench with -DOOXML_BUILD_BENCH=ON
# (Release), writes the large documents (bench/make_large.py), then for each
# compares, on its large parts, wxXmlDocument::Load alone, the whole
# wxWidgets path, the whole fast path and (worksheets) streaming the rows,
# each with its time (fastest of 3) and its peak memory (a process per run).
#
#   bench/run.sh [BUILD_DIR]        (default build-bench)
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build-bench}
cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=Release -DOOXML_BUILD_BENCH=ON -DOOXML_BUILD_TESTS=OFF >/dev/null
cmake --build "$build" -j "$(nproc)" --target ooxml-bench
data="$build/bench-data"
documents="large.xlsx medium.xlsx large.docx large.pptx"
missing=()
for name in $documents; do
    [ -f "$data/$name" ] || missing+=("$name")
done
[ ${#missing[@]} -eq 0 ] || python3 bench/make_large.py "$data" "${missing[@]}"
echo
uptime
for name in $documents; do
    echo
    echo "== $data/$name"
    "$build/bench/ooxml-bench" --repeat 3 "$data/$name"
done
