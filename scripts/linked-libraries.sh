# shellcheck shell=bash
# For scripts that ask what programs are linked with; to be sourced.

# Paths of the libraries that a program asks for itself.
direct_libraries() {
    join <(readelf -d "$1" | sed -nE 's/.*\(NEEDED\).*\[(.*)\]/\1/p' | sort) \
        <(all_libraries "$1" | awk '{ count = split($1, part, "/"); print part[count], $1 }' | sort) | cut -d ' ' -f 2
}

# Paths of those, of what they ask for, and so on.
all_libraries() {
    ldd "$1" | awk '$3 ~ /^\// { print $3 } $1 ~ /^\// { print $1 }'
}

# The Debian packages that hold the libraries whose paths are on the input, sorted. Fails, naming it, when one belongs to
# none. Debian's lists of files still say /lib where /usr/lib is meant.
packages_of_libraries() {
    local libraries library owners
    mapfile -t libraries < <(sort -u | xargs -r realpath | sort -u)
    owners=$(dpkg-query --search "${libraries[@]}" "${libraries[@]#/usr}" 2>/dev/null | grep -v '^diversion') || true
    for library in "${libraries[@]}"; do
        grep -q " \(/usr\)\?${library#/usr}\$" <<<"$owners" || {
            printf '%s belongs to no package\n' "$library" >&2
            return 1
        }
    done
    cut -d : -f 1 <<<"$owners" | sort -u
}
