#!/usr/bin/env bash
# Breaks the code in small ways, one at a time, and runs the tests on each. Prints those that no test
# notices and that scripts/explained-mutants.txt does not explain, and fails when there are any.
# Works on copies; see --help.
set -euo pipefail
cd "$(dirname "$0")/.."
exec python3 scripts/mutate.py "$@"
