#!/usr/bin/env bash
# The check for banned calls notices each of them, however it is written, and nothing else.
set -euo pipefail
check="$(cd "$(dirname "$0")" && pwd)/banned_calls.sh"
stage="$(mktemp -d)"
trap 'rm -rf "$stage"' EXIT
mkdir "$stage/bad" "$stage/good"

for name in sprintf vsprintf strcpy stpcpy strcat sscanf vsscanf fscanf scanf gets atoi atol atoll atof; do
    cat >>"$stage/bad/example.cpp" <<END
    $name(a, b);
    std::$name(a, b);
    ::$name (a, b);
    x = 1 + $name(a);
    *out = $name(a);
    return !$name(a); // with a comment
    /* with a comment */ $name(a);
END
    cat >>"$stage/good/example.cpp" <<END
    // $name(a) is not called
    /* $name(a) is not called
     * $name(a) is not called
     */
    call("$name(a)");
    my_$name(a);
END
done
printf '    sscanf(text, "%%15s", name);\n' >>"$stage/bad/example.cpp"
for name in snprintf vsnprintf strncpy fgets strtol readInt; do
    echo "    $name(a, b, c);" >>"$stage/good/example.cpp"
done

code=0
"$check" "$stage/bad" >"$stage/found" 2>"$stage/err" || code=$?
if ((code != 1)) || ! cut -d: -f3- "$stage/found" | diff "$stage/bad/example.cpp" -; then
    echo "FAILED: the check says $code and misses the lines above" >&2
    cat "$stage/err" >&2
    exit 1
fi
if ! "$check" "$stage/good"; then
    echo "FAILED: the check complains about the lines above" >&2
    exit 1
fi
