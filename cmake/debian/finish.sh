#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Does what Debian's own tools for packages do and CPack does not:
#
#     finish.sh PACKAGE.deb SOURCE
set -euo pipefail
package=$(readlink -f "$1")
source=$(readlink -f "$2")

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
content=$folder/content
dpkg-deb -R "$package" "$content"
control=$content/DEBIAN/control
field() { sed -n "s/^$1: //p" "$control"; }
name=$(field Package)
doc=$content/usr/share/doc/$name
mkdir -p "$doc"

# Licence and changes.
{
    echo "Format: https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/"
    echo
    echo "Files: *"
    sed -n 's/^Copyright (c) /Copyright: /p' "$source/LICENSE"
    echo "License: Expat"
    sed -n '/^Permission/,$p' "$source/LICENSE" | sed 's/^$/./; s/^/ /'
} >"$doc/copyright"
gzip -9nc "$source/CHANGELOG.md" >"$doc/changelog.gz"
date=$(date -R ${SOURCE_DATE_EPOCH:+-u -d "@$SOURCE_DATE_EPOCH"})
gzip -9nc >"$doc/changelog.Debian.gz" <<END
routerinterface ($(field Version)) unstable; urgency=medium

  * The changes of this version are in changelog.gz.

 -- $(field Maintainer)  $date
END

if [ -d "$content/usr/share/man" ]; then
    find "$content/usr/share/man" -type f ! -name '*.gz' -exec gzip -9n {} +
fi
find "$content" -name '*.a' -exec strip --strip-debug --enable-deterministic-archives --remove-section=.comment {} +

if grep -qs -e '-fPIC' "$content"/usr/lib/*/pkgconfig/*.pc; then
    mkdir -p "$content/usr/share/lintian/overrides"
    cat >"$content/usr/share/lintian/overrides/$name" <<END
# The headers of Qt refuse to be compiled without this option. CMake and qmake pass it on, but Qt's own files for pkg-config
# do not have it.
$name: pkg-config-bad-directive -fPIC *
END
fi

# dpkg itself knows when the cache of libraries must be made anew.
if grep -qs ldconfig "$content/DEBIAN/postinst"; then
    rm -f "$content/DEBIAN/postinst" "$content/DEBIAN/postrm"
    echo "activate-noawait ldconfig" >"$content/DEBIAN/triggers"
fi

# Packages for several processors can be installed together, where their files differ in name or not at all.
case $(field Section) in
    libs | libdevel) [ "$(field Architecture)" = all ] && multi=foreign || multi=same ;;
    *) multi=foreign ;;
esac
sed -i "/^Architecture:/a Multi-Arch: $multi" "$control"

chmod -R u=rwX,go=rX "$content"
(cd "$content" && find usr -type f -print0 | sort -z | xargs -0 md5sum >DEBIAN/md5sums)
size=$(du -sk --apparent-size --exclude=DEBIAN "$content" | cut -f1)
sed -i "s/^Installed-Size:.*/Installed-Size: $size/" "$control"
dpkg-deb --root-owner-group -Zxz -b "$content" "$package" >/dev/null
