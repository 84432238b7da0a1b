#!/usr/bin/env bash
# Runs every ```console example of a Markdown document and compares its output.
# Usage: scripts/check-doc-examples.sh DOC PQORDER_BINARY [EMULATOR...]
# (the emulator and its arguments run a cross-built binary).
# A block is one "$ " command line (run by bash, pqorder being the binary) and its exact stdout.
set -euo pipefail

if [[ $# -lt 2 ]]; then
    echo "usage: $0 DOC PQORDER_BINARY [EMULATOR...]" >&2
    exit 2
fi
doc=$1
bin=$(realpath -- "$2")
shift 2
[[ -f $doc && -x $bin ]] || { echo "$0: cannot read $doc or run $bin" >&2; exit 2; }

tmp=$(mktemp -d)
trap 'rm -rf -- "$tmp"' EXIT
mkdir "$tmp/bin"
if (($# == 0)); then
    ln -s -- "$bin" "$tmp/bin/pqorder"
else
    printf '#!/usr/bin/env bash\nexec %s "$@"\n' "$(printf '%q ' "$@" "$bin")" >"$tmp/bin/pqorder"
    chmod +x "$tmp/bin/pqorder"
fi

checked=0
failed=0
inBlock=0
command=""

# Runs $command and compares what it printed with the block's lines; its exit
# status is not checked, since some examples fail on purpose.
check() {
    checked=$((checked + 1))
    (cd "$tmp" && PATH="$tmp/bin:$PATH" bash -c "$command" <"/dev/null" >"$tmp/actual" 2>"$tmp/stderr") || true
    if ! cmp -s "$tmp/expected" "$tmp/actual"; then
        echo "doc example failed: \$ $command"
        diff -u --label expected --label actual "$tmp/expected" "$tmp/actual" || true
        sed 's/^/  stderr: /' "$tmp/stderr"
        failed=1
    fi
}

while IFS= read -r line || [[ -n $line ]]; do
    if ((!inBlock)); then
        [[ $line == '```console' ]] && { inBlock=1; command=""; : >"$tmp/expected"; }
    elif [[ $line == '```' ]]; then
        inBlock=0
        [[ -n $command ]] || { echo "a console block without a \"\$ \" line"; failed=1; continue; }
        check
    elif [[ -z $command && $line == '$ '* ]]; then
        command=${line#'$ '}
    else
        printf '%s\n' "$line" >>"$tmp/expected"
    fi
done <"$doc"

((!inBlock)) || { echo "an unterminated console block"; failed=1; }
((!failed)) || exit 1
echo "doc examples: $checked checked"
