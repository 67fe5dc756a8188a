#!/usr/bin/env bash
# Takes new and changed texts of the sources into src/resources/translations/*.ts, where they wait
# to be translated ("unfinished"). A folder as argument: works on copies in it instead.
# shellcheck source=scripts/common.sh
source "$(dirname "$(readlink -f "$0")")/common.sh"

folder=${1:-src/resources/translations}
[ $# -eq 0 ] || cp src/resources/translations/*.ts "$folder"
options=(-no-obsolete -locations none -silent -I src src/mainwindow src/features src/app)
# English differs from the sources in its plurals only.
lupdate "${options[@]}" -pluralonly -target-language en -ts "$folder/lan_en.ts"
lupdate "${options[@]}" -target-language zh_CN -ts "$folder/lan_cn.ts"
