# What the scripts that build share. Sourced by them, in the root of the tree.

log=$(mktemp)
trap 'rm -f "$log"' EXIT

# Says what a command said only if it fails.
quietly() { "$@" >"$log" 2>&1 || { cat "$log" >&2; exit 1; }; }

# build_release TARGET...: with the benchmarks, which are left out otherwise.
build_release() {
  script/bootstrap
  quietly cmake --preset release -DZIB_BUILD_BENCHMARKS=ON
  quietly cmake --build --preset release -j "$(nproc)" --target "$@"
}
