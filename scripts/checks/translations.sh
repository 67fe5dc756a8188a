#!/usr/bin/env bash
# Fails when a text of the sources is missing in a language file, when one is there that the
# sources no longer have, and when one is not translated.
# shellcheck source=scripts/common.sh
source "$(dirname "$(readlink -f "$0")")/../common.sh"

files=src/resources/translations
copies=$(mktemp -d)
trap 'rm -rf "$copies"' EXIT
scripts/update-translations.sh "$copies"
diff -u "$files" "$copies" || fail "Run scripts/update-translations.sh and translate what is new."
! grep -Hn 'type="unfinished"' "$files"/*.ts || fail "These texts are not translated."
say "$(grep -c '<source>' "$files/lan_cn.ts") texts"
