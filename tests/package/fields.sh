#!/usr/bin/env bash
# The package as dpkg sees it: its control fields, its files and their
# modes, the desktop entry pointing at a packaged program and icon, and a
# Depends field naming the package of every library the programs link.
#   fields.sh PACKAGE_DIR RESOURCES_DIR
set -euo pipefail
deb=$(echo "$1"/vex_*.deb)
resources=$2
fail() { echo "FAIL: $*" >&2; exit 1; }
trap 'echo "FAIL: line $LINENO: $BASH_COMMAND" >&2' ERR

info=$(dpkg-deb --info "$deb")
field() { dpkg-deb --field "$deb" "$1"; }
[ "$(field Package)" = vex ] || fail "Package is $(field Package)"
[ "$(field Section)" = misc ] || fail "Section is $(field Section)"
depends=$(field Depends)
# True when Depends names the package (with or without a version).
depends_on() { sed 's/ *([^)]*)//g; s/, */\n/g' <<<"$depends" | grep -xF "$1" >/dev/null; }
for runtime in libqt6sql6-sqlite qt6-qpa-plugins fonts-noto-cjk qt6-translations-l10n; do
  depends_on "$runtime" || fail "Depends lacks $runtime: $depends"
done
grep -q '^ Description: office program' <<<"$info" || fail "no description"

listing=$(dpkg-deb --contents "$deb")
# path -> "mode owner" of each entry, paths as ./usr/...
entry() { awk -v p="./$1" '$6 == p { print $1, $2 }' <<<"$listing"; }
for program in vex vexcli vex-analyzer; do
  [ "$(entry "usr/bin/$program")" = "-rwxr-xr-x root/root" ] || fail "usr/bin/$program: $(entry "usr/bin/$program")"
done
outside=$(awk '$6 !~ /^\.\/usr\// { print $6 }' <<<"$listing")
[ -z "$outside" ] || fail "files outside /usr: $outside"

# Every delivered file of the source tree, where the programs look for it.
count=0
while IFS= read -r -d '' file; do
  rel=${file#"$resources"/}
  [ "$(entry "usr/share/vex/$rel")" = "-rw-r--r-- root/root" ] || fail "usr/share/vex/$rel: $(entry "usr/share/vex/$rel")"
  count=$((count + 1))
done < <(find "$resources" -type f -not -name '.*' -print0)
[ "$count" -gt 20 ] || fail "only $count delivered files in $resources"
for db in db_temp/morix.mdb Exp/exp.mdb; do
  [ -n "$(entry "usr/share/vex/$db")" ] || fail "no usr/share/vex/$db"
done
for doc in usr/share/man/man1/vexcli.1.gz usr/share/doc/vex/copyright usr/share/doc/vex/changelog.gz; do
  [ -n "$(entry "$doc")" ] || fail "no $doc"
done

root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT
dpkg-deb -x "$deb" "$root"

desktop=$root/usr/share/applications/vex.desktop
[ -f "$desktop" ] || fail "no desktop entry"
value() { sed -n "s/^$1=//p" "$desktop"; }
grep -Eq '(^|;)Office(;|$)' <<<"$(value Categories)" || fail "Categories: $(value Categories)"
exec_program=$(value Exec | cut -d' ' -f1)
[ -x "$root/usr/bin/$exec_program" ] || fail "Exec=$exec_program is no packaged program"
icon=$(value Icon)
ls "$root"/usr/share/icons/hicolor/*/apps/"$icon".* >/dev/null 2>&1 || fail "Icon=$icon is not packaged"

# The libraries the programs load, each by the installed package that holds
# it: every one of them must be named in Depends.
sonames=$(for program in vex vexcli vex-analyzer; do
  objdump -p "$root/usr/bin/$program" | awk '$1 == "NEEDED" { print $2 }'
done | sort -u)
[ -n "$sonames" ] || fail "the programs link no libraries"
for soname in $sonames; do
  path=$(ldconfig -p | awk -v s="$soname" '$1 == s && !found { print $NF; found = 1 }')
  [ -n "$path" ] || fail "$soname is linked but not installed here"
  owner=$(dpkg -S "$(readlink -f "$path")" 2>/dev/null || dpkg -S "$path") || fail "no package holds $path"
  owner=${owner%%:*}
  depends_on "$owner" || fail "$soname of $owner is linked, but Depends does not name $owner: $depends"
done
echo "package fields and files: ok ($count delivered files)"
