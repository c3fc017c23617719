# Sets "sources": the C and C++ files here, without what is built. To be sourced.
if git rev-parse --is-inside-work-tree >/dev/null 2>&1 && [[ -n "$(git ls-files | head -n 1)" ]]; then
    mapfile -d '' sources < <(git ls-files -z --cached --others --exclude-standard '*.h' '*.cpp' '*.c')
else
    mapfile -d '' sources < <(find . -path ./build -prune -o \( -name '*.h' -o -name '*.cpp' -o -name '*.c' \) -print0)
fi
