#!/usr/bin/env bash
# Builds everything and runs every test: the Qt of the installed OBS (Qt 5 on
# Debian 12) with the host tests in the real libobs, the engine and the host
# tests again under ThreadSanitizer, then the Qt 6 build that the Windows target
# uses (compile and unit tests), so the two never drift apart, and the Windows
# build of the settings and platform code with its tests under Wine.
set -euo pipefail
cd "$(dirname "$0")/.."

if [ "$(id -u)" -eq 0 ]; then
  bash scripts/setup.sh
fi

jobs=$(nproc)
summary=$(mktemp)
cmake --preset ci >/dev/null
cmake --build --preset ci -j "$jobs"
xvfb-run -a -s "-screen 0 1280x1024x24" ctest --preset ci -j "$jobs" | tee -a "$summary"

# The engine and the host tests under ThreadSanitizer: procedures called from
# several threads while audio flows. Only those two test programs are built; the
# first report stops its test (halt_on_error in the tsan test preset) and fails it.
cmake --preset tsan >/dev/null
cmake --build --preset tsan -j "$jobs"
xvfb-run -a -s "-screen 0 1280x1024x24" ctest --preset tsan -j "$jobs" | tee -a "$summary"

cmake --preset qt6 >/dev/null
cmake --build --preset qt6 -j "$jobs"
xvfb-run -a -s "-screen 0 1280x1024x24" ctest --preset qt6 -j "$jobs" | tee -a "$summary"

# The Windows build of the settings and platform code and of lumora-cli's settings
# commands (mingw-w64), their tests run under Wine as a user named 配信者.
cmake --preset windows-cross >/dev/null
cmake --build --preset windows-cross -j "$jobs"
bash tests/windows/run-under-wine.sh build-windows | tee -a "$summary"

# A short fuzzing run of the settings file's parser and reader (the long run and
# its figures are in docs/fuzzing.md). A crash, a sanitizer report or a broken
# round trip stops the script; the input that caused it lands in build-fuzz/artifacts/.
CC=clang CXX=clang++ cmake -B build-fuzz -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DLUMORA_BUILD_FUZZ=ON -DLUMORA_BUILD_MODULE=OFF -DLUMORA_BUILD_UI=OFF \
  -DLUMORA_BUILD_TESTS=OFF -DLUMORA_BUILD_BENCH=OFF >/dev/null
cmake --build build-fuzz --target fuzz-settings -j "$jobs"
mkdir -p build-fuzz/artifacts
fuzz_corpus=$(mktemp -d)
trap 'rm -rf "$fuzz_corpus" "$summary"' EXIT
build-fuzz/tests/fuzz/fuzz-settings -max_total_time=45 -print_final_stats=1 \
  -artifact_prefix=build-fuzz/artifacts/ "$fuzz_corpus" tests/fuzz/corpus

# Every build's test counts on one closing line.
awk '/tests passed, [0-9]+ tests failed out of/ { total += $NF; failed += $4 }
  /^wine: [0-9]+ passed, [0-9]+ failed/ { total += $2 + $4; failed += $4; wine = $2 }
  END { printf "tests: %d passed, %d failed (%d of them Windows tests under Wine)\n", total - failed, failed, wine }' "$summary"
