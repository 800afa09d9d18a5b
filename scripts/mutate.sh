#!/usr/bin/env bash
# Plants one small fault at a time in the product and checks that the tests catch it.
#
#   bash scripts/mutate.sh            every mutant
#   bash scripts/mutate.sh 'tolerance' only the mutants whose description matches
#   bash scripts/mutate.sh --check     only whether each original text is still there, once
#
# Each mutant is (description, file, tests, original text, replacement); $'…\n' spans a line end.
# The original text must occur exactly once in the file; when it does not (the code moved on), the
# mutant is reported as not applied and left out of the rate. Builds go to MUTATE_BUILD (default
# build-mutate), so the usual build/ stays as it is. Every planted fault is undone on exit, even on Ctrl-C.
set -uo pipefail
# Read whole before running, so that editing this file during a run cannot derail it.
{
cd "$(dirname "$0")/.."

build=${MUTATE_BUILD:-build-mutate}
timeout=${MUTATE_TIMEOUT:-300}
only=${1:-}
log=$build/mutate-logs

descs=() files=() tests=() froms=() tos=()
m() { descs+=("$1") files+=("$2") tests+=("$3") froms+=("$4") tos+=("$5"); }

# --- language ---------------------------------------------------------------------------------
m "REPEAT allows 101" language/LogoParser.cpp tst_language \
  'count < 1 || count > 100 ||' 'count < 1 || count > 101 ||'
m "distance 10,000 refused" language/LogoParser.cpp tst_language \
  'std::abs(value) > 10000' 'std::abs(value) >= 10000'
m "width 21 allowed" language/LogoParser.cpp tst_language \
  '(value < 1 || value > 20)' '(value < 1 || value > 21)'
m "one level deeper nesting" language/LogoParser.h tst_language \
  'static constexpr int maxDepth = 11;' 'static constexpr int maxDepth = 12;'
m "REPEAT message wording" language/LogoParser.cpp tst_language \
  'Try a whole REPEAT number from 1 to 100.' 'Try a whole REPEAT number from 1 to 99.'

# --- turtle -----------------------------------------------------------------------------------
m "forward goes down" turtle/Turtle.cpp "tst_turtle tst_driver" \
  'point.y() - distance * std::cos(radians)' 'point.y() + distance * std::cos(radians)'
m "pen up still draws" turtle/Turtle.cpp "tst_turtle tst_driver" \
  'if (pen && std::abs(distance) > minimumStroke)' 'if (std::abs(distance) > minimumStroke)'
m "home keeps a turn" turtle/Turtle.cpp "tst_turtle tst_driver" \
  'heading = 0;' 'heading = 90;'

# --- canvas -----------------------------------------------------------------------------------
m "narrower margins" canvas/SurfacePainter.cpp tst_surface \
  'constexpr double margins = 70;' 'constexpr double margins = 60;'
m "hair-thin lines vanish" canvas/SurfacePainter.cpp tst_surface \
  'pen.setWidthF(std::max(1.0, stroke.width * fit.scale));' 'pen.setWidthF(stroke.width * fit.scale);'

# --- curriculum -------------------------------------------------------------------------------
m "tolerance inclusive" curriculum/MissionCheck.cpp tst_curriculum \
  'return std::abs(difference) < tolerance - slack;' 'return std::abs(difference) <= tolerance + slack;'
m "looser joints" curriculum/MissionCheck.cpp tst_curriculum \
  'constexpr double jointTolerance = 1.0;' 'constexpr double jointTolerance = 1.5;'
m "triangle without a loop" curriculum/MissionCheck.cpp tst_curriculum \
  '{3, 100, Joins::Closed, 120, true, false},' '{3, 100, Joins::Closed, 120, false, false},'
m "one colour is enough" curriculum/MissionCheck.cpp tst_curriculum \
  'if (colours.size() < 2)' 'if (colours.size() < 1)'
m "recipe need not be called" curriculum/MissionCheck.cpp tst_curriculum \
  'if (!parser.executableTokens.contains(recipes.constLast()))' 'if (false)'
m "mission 26 colours unchecked" curriculum/MissionCheck.cpp tst_curriculum \
  'mission == 16 || mission == 26 || mission == 29' 'mission == 16 || mission == 29'
m "earned mission locks" curriculum/Progress.cpp "tst_curriculum tst_progress" \
  '|| completed.contains(mission - 1) || completed.contains(mission);' '|| completed.contains(mission - 1);'
m "rank one badge early" curriculum/Progress.cpp "tst_curriculum tst_progress" \
  'badges / missionsPerWorld' '(badges + 1) / missionsPerWorld'
m "theme needs one more badge" curriculum/Themes.cpp "tst_curriculum tst_progress" \
  'badges >= themes().at(theme).unlock' 'badges > themes().at(theme).unlock'
m "theme label wording" curriculum/Themes.cpp "tst_curriculum tst_progress" \
  'QStringLiteral(" badges")' 'QStringLiteral(" badge")'

# --- profile ----------------------------------------------------------------------------------
m "names one character longer" profile/NameRules.cpp "tst_profile tst_startup" \
  'words.join(u'"' '"'), maxNameLength)' 'words.join(u'"' '"'), maxNameLength + 1)'
m "unreadable file not set aside" profile/SqlitePreferencesStore.cpp tst_store \
  'outcome = setAsideStore(m_filePath) ?' 'outcome = false ?'

# --- gallery ----------------------------------------------------------------------------------
m "dates a second off" gallery/CreationCodec.cpp tst_gallery \
  'constexpr double referenceDateOffset = 978307200.0;' 'constexpr double referenceDateOffset = 978307201.0;'

# --- app --------------------------------------------------------------------------------------
m "step never finishes" app/StudioDriver.cpp tst_driver \
  'if (m_stepIndex == m_queue.size())' 'if (m_stepIndex == m_queue.size() + 1)'
m "pause ten times shorter" app/StudioDriver.cpp tst_driver \
  'qRound64(m_speed * 1e9)' 'qRound64(m_speed * 1e8)'
m "heading not announced" app/StudioTurtle.cpp tst_driver \
  'emit headingChanged();' ';'
m "speed unbounded" app/Studio.cpp tst_driver \
  'qBound(fastestSpeed, speed, slowestSpeed)' 'speed'
m "free-play code not stored" app/Studio.cpp "tst_progress tst_startup" \
  'm_defaults.setString(QStringLiteral("freeCode"), code);' ';'
m "companion name not announced" app/Studio.cpp "tst_profile tst_startup" \
  'emit turtleNameChanged();' ';'
m "badge not stored" app/StudioProgress.cpp "tst_progress tst_startup" \
  'return PreferencesStore::integerArrayValue(ordered);' 'return std::nullopt;'
m "one hint too many" app/StudioProgress.cpp tst_progress \
  'std::min(m_hint + 1, int(missions().at(m_mission).hints.size()))' 'std::min(m_hint + 1, int(missions().at(m_mission).hints.size()) + 1)'
m "royal needs four badges" app/StudioNames.cpp "tst_profile tst_startup" \
  'badges() >= royalBadges' 'badges() > royalBadges'
m "welcome not stored" app/StudioNames.cpp tst_startup \
  'm_defaults.setBoolean(QStringLiteral("hasCompletedWelcome"), true);' ';'
m "shelf title straight quote" app/StudioNames.cpp tst_startup \
  'QStringLiteral("’s treasure shelf")' "QStringLiteral(\"'s treasure shelf\")"
m "longer creation titles" gallery/Creation.h tst_gallery \
  'static constexpr int maxTitleLength = 80;' 'static constexpr int maxTitleLength = 81;'
m "saves a stale drawing" app/StudioGallery.cpp tst_gallery \
  '|| m_drawingSource.isEmpty() || m_drawingSource != m_code)' '|| m_drawingSource.isEmpty())'
m "erase before the sheet has closed" app/StudioStartup.cpp "tst_startup tst_onboarding" \
  'm_resetAfterProfileDismissal = true;' 'm_resetAfterProfileDismissal = true; finishProfileDismissal();'
m "erase pattern unanchored" app/StudioStartup.cpp tst_startup \
  'QStringLiteral("\\Acode[0-9]+\\z")' 'QStringLiteral("^code[0-9]+$")'

# --- screens ----------------------------------------------------------------------------------
m "welcome closes on a click outside" ui/controls/Sheet.qml tst_onboarding \
  ': Popup.NoAutoClose' ': Popup.CloseOnPressOutside'
m "handbook example wording" ui/screens/GuideView.qml tst_side_screens \
  '["width 8", "Make your next lines' '["width 9", "Make your next lines'
m "surface repaints on equal value" ui/studio/DrawingSurface.cpp tst_surface \
  'if (field == value)' 'if (false)'
m "Run button wording" ui/studio/EditorPane.qml tst_studio_ui \
  'text: Studio.running ? "Stop" : "Run code"' 'text: Studio.running ? "Stop" : "Run"'
m "hint button past the last hint" ui/studio/EditorPane.qml tst_studio_ui \
  'enabled: Studio.hint < pane.current.hints.length' 'enabled: Studio.hint <= pane.current.hints.length'
m "chosen card border" ui/studio/StagePane.qml tst_studio_ui \
  'border.width: Studio.turtle === index ? 2 : 1' 'border.width: Studio.turtle === index ? 3 : 1'
m "export while running" ui/studio/StagePane.qml tst_studio_ui \
  $'enabled: !Studio.running && Studio.strokes.length > 0\n' $'enabled: Studio.strokes.length > 0\n'
m "banner XP wording" ui/studio/MissionBanner.qml tst_studio_ui \
  '"Earned" : "+100 XP"' '"Earned" : "+10 XP"'
m "celebration button wording" ui/studio/CelebrationDialog.qml tst_studio_ui \
  '"Explore free play" : "Next adventure"' '"Explore free play" : "Next mission"'
m "blank title can be saved" ui/studio/SaveDialog.qml tst_studio_ui \
  'enabled: Studio.creationTitle.trim().length > 0' 'enabled: Studio.creationTitle.length > 0'
m "empty gallery note hidden" ui/screens/GalleryView.qml tst_side_screens \
  'visible: creations.count === 0' 'visible: creations.count === 1'
m "wrong done colour" ui/studio/Sidebar.qml tst_studio_ui \
  'color: row.done ? Theme.green : Theme.violet' 'color: row.done ? Theme.violet : Theme.violet'

# --- the run ----------------------------------------------------------------------------------
pending_file="" pending_backup=""
restore() {
  if [ -n "$pending_file" ]; then
    cat "$pending_backup" > "$pending_file" # a fresh timestamp, so the next build recompiles it
    rm -f "$pending_backup"
    pending_file=""
  fi
}
trap 'restore' EXIT
trap 'exit 130' INT TERM

# 0: the original text occurs once in the file, 1: not at all, 2: more than once
locate() {
  local file=$1 from=$2 rest
  [ -f "$file" ] || return 1
  IFS= read -r -d '' content < "$file" || true
  [[ $content == *"$from"* ]] || return 1
  rest=${content#*"$from"}
  [[ $rest == *"$from"* ]] && return 2
  return 0
}

plant() {
  local file=$1 from=$2 to=$3 content
  locate "$file" "$from" || return
  pending_backup=$(mktemp)
  cp "$file" "$pending_backup"
  pending_file=$file
  printf '%s' "${content/"$from"/"$to"}" > "$file"
}

run_tests() { # names... ; 0 when every named test passes
  local regex
  regex="^($(tr ' ' '|' <<< "$*"))\$"
  QT_QPA_PLATFORM=offscreen ctest --test-dir "$build" -R "$regex" --timeout "$timeout" -j2 --no-tests=error
}

if [ "$only" = --check ]; then
  status=0
  for i in "${!descs[@]}"; do
    locate "${files[$i]}" "${froms[$i]}"
    case $? in
      0) ;;
      1) echo "text not found: ${descs[$i]} (${files[$i]})"; status=1 ;;
      2) echo "text not unique: ${descs[$i]} (${files[$i]})"; status=1 ;;
    esac
  done
  echo "${#descs[@]} mutants declared"
  exit $status
fi

if [ ! -f "$build/build.ninja" ]; then
  launcher=$(command -v ccache > /dev/null && echo -DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
  cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo $launcher > /dev/null || exit 1
fi
mkdir -p "$log"

selected=()
for i in "${!descs[@]}"; do
  [[ -z $only || ${descs[$i]} =~ $only ]] && selected+=("$i")
done

# The tests must pass on the untouched code, or a failure would say nothing about a mutant.
all_tests=$(for i in "${selected[@]}"; do tr ' ' '\n' <<< "${tests[$i]}"; done | sort -u | tr '\n' ' ')
echo "Baseline: $all_tests"
if ! cmake --build "$build" --target $all_tests > "$log/baseline.log" 2>&1 \
   || ! run_tests $all_tests >> "$log/baseline.log" 2>&1; then
  echo "The tests fail without any mutant; see $log/baseline.log" >&2
  exit 1
fi

caught=0 counted=0 rows=() survivors=()
for i in "${selected[@]}"; do
  desc=${descs[$i]} file=${files[$i]}
  n=$(printf '%02d' "$i")
  plant "$file" "${froms[$i]}" "${tos[$i]}"
  case $? in
    1) rows+=("$n|not applied (text not found)|$desc|$file"); continue ;;
    2) rows+=("$n|not applied (text not unique)|$desc|$file"); continue ;;
  esac
  if ! cmake --build "$build" --target ${tests[$i]} > "$log/$n.log" 2>&1; then
    status="not applied (does not build)"
  elif run_tests ${tests[$i]} >> "$log/$n.log" 2>&1; then
    status="SURVIVED"; counted=$((counted + 1)); survivors+=("$desc ($file)")
  else
    status="caught"; counted=$((counted + 1)); caught=$((caught + 1))
  fi
  restore
  rows+=("$n|$status|$desc|$file")
  echo "$n $status: $desc"
done

echo
printf '%-3s %-30s %-36s %s\n' "#" "result" "mutant" "file"
for row in "${rows[@]}"; do
  IFS='|' read -r n status desc file <<< "$row"
  printf '%-3s %-30s %-36s %s\n' "$n" "$status" "$desc" "$file"
done
echo
if [ "$counted" -gt 0 ]; then
  echo "caught $caught of $counted ($((100 * caught / counted)) %)"
else
  echo "caught 0 of 0"
fi
for s in "${survivors[@]}"; do echo "survived: $s"; done
exit
}
