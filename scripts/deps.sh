#!/usr/bin/env bash
# Installs the Debian packages a build stage needs, only those missing.
#
#   scripts/deps.sh [STAGE...]        (no stage: base)
#
#   base      host build, tests, benchmarks and the orvik command
#   sanitize  the asan preset (gcc's ASan/UBSan runtimes)
#   android   the android-log preset (Debian's liblog port)
#   tsan      the tsan preset (gcc's ThreadSanitizer runtime)
#   fuzz      the fuzz preset: clang with libFuzzer and the sanitizer runtimes
#   cross     the aarch64 and armv7 presets: cross compilers, qemu-user and
#             the arm64/armhf multiarch Highway and GoogleTest
#   opencv    OpenCV and libyuv, for comparisons against peer libraries
#   all       every stage above
#
# Quiet when nothing is missing.  Installing needs root (or password-less
# sudo); otherwise the missing packages are listed and the script fails.
set -euo pipefail

usage() {
  sed -n '2,/^set -euo/p' "$0" | sed '$d' | sed 's/^# \{0,1\}//'
}

stage_packages() {
  case "$1" in
    base) echo cmake ninja-build g++ libhwy-dev libgtest-dev libbenchmark-dev libpng-dev pkg-config ;;
    sanitize) echo cmake ninja-build g++ libhwy-dev libgtest-dev libasan8 libubsan1 ;;
    android) echo cmake ninja-build g++ libhwy-dev libgtest-dev android-liblog-dev ;;
    tsan) echo cmake ninja-build g++ libhwy-dev libgtest-dev libtsan2 ;;
    fuzz) echo cmake ninja-build clang libclang-rt-14-dev libhwy-dev ;;
    cross)
      echo cmake ninja-build qemu-user \
        g++-aarch64-linux-gnu libhwy-dev:arm64 libgtest-dev:arm64 \
        g++-arm-linux-gnueabihf libhwy-dev:armhf libgtest-dev:armhf
      ;;
    opencv) echo libopencv-dev libyuv-dev ;;
    *) return 1 ;;
  esac
}

stages=("$@")
[ ${#stages[@]} -gt 0 ] || stages=(base)
if [ "${stages[0]}" = "-h" ] || [ "${stages[0]}" = "--help" ]; then
  usage
  exit 0
fi
if [ "${stages[0]}" = all ]; then stages=(base sanitize tsan android fuzz cross opencv); fi

wanted=()
foreign_arches=()
for stage in "${stages[@]}"; do
  if ! list=$(stage_packages "$stage"); then
    echo "deps.sh: unknown stage '$stage' (try --help)" >&2
    exit 2
  fi
  read -r -a packages <<<"$list"
  wanted+=("${packages[@]}")
  [ "$stage" != cross ] || foreign_arches+=(arm64 armhf)
done

# A package counts as present only when dpkg has it fully installed; a name
# without :arch means the native (or arch-independent) one, since a library
# may also be installed for arm64/armhf.
native_arch=$(dpkg --print-architecture)
is_installed() {
  case "$1" in
    *:*) [ "$(dpkg-query -W -f='${db:Status-Status}' "$1" 2>/dev/null)" = installed ] ;;
    *) dpkg-query -W -f='${Architecture} ${db:Status-Status}\n' "$1" 2>/dev/null |
         grep -qE "^($native_arch|all) installed\$" ;;
  esac
}

missing=()
for package in "${wanted[@]}"; do
  is_installed "$package" || missing+=("$package")
done
[ ${#missing[@]} -gt 0 ] || exit 0
# Drop duplicates, keep order.
read -r -a missing <<<"$(printf '%s\n' "${missing[@]}" | awk '!seen[$0]++' | tr '\n' ' ')"

if [ "$(id -u)" -eq 0 ]; then
  as_root=()
elif command -v sudo >/dev/null && sudo -n true 2>/dev/null; then
  as_root=(sudo -n)
else
  echo "deps.sh: missing Debian packages (run as root to install them):" >&2
  echo "  apt-get install ${missing[*]}" >&2
  exit 1
fi

log=$(mktemp "${TMPDIR:-/tmp}/orvik-deps.XXXXXX")
trap 'rm -f "$log"' EXIT
run() {
  if ! "${as_root[@]}" "$@" >>"$log" 2>&1; then
    echo "deps.sh: failed: $*" >&2
    tail -n 40 "$log" >&2
    return 1
  fi
}

echo "deps.sh: installing ${missing[*]}"
for arch in "${foreign_arches[@]}"; do
  dpkg --print-foreign-architectures | grep -qx "$arch" || run dpkg --add-architecture "$arch"
done
# A mirror that is mid-sync can fail one index (apt exits 100) while the rest
# is fine; the install below is what decides.
if ! "${as_root[@]}" apt-get update -qq >>"$log" 2>&1; then
  echo "deps.sh: apt-get update reported errors; trying the install anyway" >&2
  grep -E '^(E|W):' "$log" | head -n 5 >&2 || true
fi
run env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}"

still_missing=()
for package in "${missing[@]}"; do
  is_installed "$package" || still_missing+=("$package")
done
if [ ${#still_missing[@]} -gt 0 ]; then
  echo "deps.sh: still missing after install: ${still_missing[*]}" >&2
  exit 1
fi
