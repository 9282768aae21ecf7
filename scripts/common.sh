# Sourced by run, test and bench: the checkout's root, the environment that a started browser needs, and the build.
# shellcheck shell=bash
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$top"

# Qt wants a UTF-8 locale, and a CI machine often has none.
case ${LC_ALL:-${LC_CTYPE:-${LANG:-}}} in *[Uu][Tt][Ff]*) ;; *) export LC_ALL=C.UTF-8 ;; esac

# The engine refuses to run its sandbox as root. That is this script's user's decision, never the library's.
if [ "$(id -u)" = 0 ]; then
    export QTWEBENGINE_DISABLE_SANDBOX=1
fi

# build PRESET [-DNAME=VALUE...] [TARGET...]: configures and builds; all output goes to the standard error stream.
build() {
    local preset=$1 argument
    local settings=() targets=()
    shift
    for argument in "$@"; do
        case $argument in
        -D*) settings+=("$argument") ;;
        *) targets+=(--target "$argument") ;;
        esac
    done
    # Precompiled headers carry time stamps that ccache has to look past.
    export CCACHE_SLOPPINESS=${CCACHE_SLOPPINESS:-pch_defines,time_macros}
    cmake --preset "$preset" --log-level=WARNING "${settings[@]}" >&2
    cmake --build "build/$preset" --parallel "$(nproc)" "${targets[@]}" >&2
}
