# What the tests of this folder share; each sources it first.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
source_dir=$(cd "$here/../.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

fail() {
    echo "FAILED: $*" >&2
    exit 1
}

# skip REASON: the test counts as skipped, not as passed.
skip() {
    echo "SKIPPED: $*"
    exit 77
}

# quietly COMMAND...: shows the output only if the command fails.
quietly() {
    "$@" >"$work/log" 2>&1 || { cat "$work/log" >&2; fail "$*"; }
}

# expect WANTED COMMAND...: what the command prints is WANTED.
expect() {
    local wanted=$1 printed
    shift
    printed=$("$@") || fail "$* ends with $?"
    [[ $printed == "$wanted" ]] || fail "$* prints '$printed' instead of '$wanted'"
}

# The version stands in the header only.
version=$(sed -n 's/^#define VELMORA_VERSION "\(.*\)"/\1/p' "$source_dir/include/velmora.h")
# What tests/packaging/consumer prints, and a PHP script that asks the same.
consumer_output="$version: DE89370400440532013000 is at COBADEFFXXX"
php_consumer="echo phpversion('sepa'), ': DE89370400440532013000 is at ', SEPA::IBAN_getBIC('DE89370400440532013000');"
