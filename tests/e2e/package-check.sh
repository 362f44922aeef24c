#!/usr/bin/env bash
# Makes the Debian package from the build with cpack and checks what a user's
# apt would see: its dependencies, and its files where Debian's OBS Studio reads
# plug-ins (a stripped module, the data folder, nothing else). The end-to-end
# test in OBS installs from the package this leaves in PACKAGE_DIR.
#   package-check.sh CPACK_CONFIG PACKAGE_DIR QT_MAJOR
set -euo pipefail
cpack_config=$1 package_dir=$2 qt=$3

rm -f "$package_dir"/*.deb
cpack --config "$cpack_config" -B "$package_dir"
debs=("$package_dir"/*.deb)
if [ ${#debs[@]} -ne 1 ] || [ ! -f "${debs[0]}" ]; then
  echo "expected one .deb in $package_dir, found: ${debs[*]}"; exit 1
fi
deb=${debs[0]}
dpkg-deb -I "$deb"
status=0
fail() { echo "FAIL: $1"; status=1; }

# Each library the module links must be a dependency, or apt installs a plug-in
# that OBS cannot load.
depends=$(dpkg-deb -f "$deb" Depends)
for needed in "obs-studio (>= 29)" libobs0 libsoundtouch libebur128 "libqt${qt}core" \
              "libqt${qt}gui" "libqt${qt}widgets"; do
  case "$depends" in *"$needed"*) echo "ok: depends on $needed" ;;
                                  *) fail "Depends lacks $needed: $depends" ;; esac
done

root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT
dpkg-deb -x "$deb" "$root"
module=usr/lib/$(dpkg-architecture -qDEB_HOST_MULTIARCH)/obs-plugins/lumora.so
data=usr/share/obs/obs-plugins/lumora
[ -f "$root/$module" ] && echo "ok: /$module" || fail "no /$module"
for file in locale/en-US.ini locale/ja-JP.ini images/Tindra_0.png fonts/OFL-KleeOne.txt; do
  [ -f "$root/$data/$file" ] || fail "no /$data/$file"
done
# Nothing outside those two places; the embedded font is not shipped twice.
stray=$(cd "$root" && find . -type f ! -path "./$module" ! -path "./$data/*")
[ -z "$stray" ] || fail "files OBS does not read: $stray"
ttf=$(find "$root" -name '*.ttf')
[ -z "$ttf" ] || fail "the embedded font is installed: $ttf"
if readelf -S "$root/$module" | grep -q '\.debug_info'; then fail "the module is not stripped"
else echo "ok: stripped module, $(stat -c %s "$root/$module") bytes"; fi

echo "package: $deb ($(stat -c %s "$deb") bytes)"
exit $status
