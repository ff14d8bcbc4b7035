#!/bin/bash
# The layers: a folder includes what lies below it, never what lies above. A folder of src and the
# one of the same name in include/vndoc6, which hosts see, are one layer. Prints each include that
# points upwards and is not listed here; fails when there is one, and when a listed one is gone.

layers=(automation schema platform bag fields core collections titles chart details process templates
  document published content com com/server)

# What points upwards, for a reason. Of sources only: a part gives its document, step or link back to
# hosts, so its rows need that class whole.
upward_includes() {
  cat <<'LIST'
chart/chart.cpp document/document.h
chart/figure.cpp document/document.h
chart/figure.cpp process/container.h
chart/figure.cpp process/step.h
chart/line.cpp document/document.h
chart/line.cpp process/link.h
core/member.cpp document/document.h
details/details.cpp document/document.h
details/item.cpp document/document.h
details/revision.cpp document/document.h
details/revision.cpp process/file.h
process/attachment_list.cpp document/document.h
process/condition.cpp document/document.h
process/container.cpp document/document.h
process/file.cpp document/document.h
process/jump.cpp document/document.h
process/link.cpp document/document.h
process/step.cpp document/document.h
process/step_members.cpp document/document.h
process/step_text.cpp document/document.h
process/steps.cpp document/document.h
process/task.cpp document/document.h
titles/title_ref.cpp document/document.h
titles/titles.cpp document/document.h
LIST
}

layer_of() {
  local folder=$1 i
  for i in "${!layers[@]}"; do
    if [[ ${layers[i]} == "$folder" ]]; then
      echo "$i"
      return
    fi
  done
  echo "tools/layers.sh: the folder $folder has no layer" >&2
  return 1
}

# Each include between folders that points upwards: "from to".
find_upward_includes() {
  local file included from to
  grep -roE --include='*.h' --include='*.cpp' '^#include "[a-z0-9_/]+/[a-z0-9_]+\.h"' src include |
    grep -vE '^[^:]*(_test\.cpp|_for_tests\.h|vndoc6/drawing\.h):' |
    sed -E 's/^(src|include\/vndoc6)\///; s/:#include "(vndoc6\/)?/ /; s/"$//' |
    while read -r file included; do
      if [[ $included == tests/* ]]; then continue; fi
      from=$(layer_of "$(dirname "$file")") && to=$(layer_of "$(dirname "$included")") || continue
      if ((to > from)); then echo "$file $included"; fi
    done | sort
}

# Hosts can't use what their headers don't show.
find_includes_of_the_inside() {
  grep -rE --include='*.h' '^#include "' include | grep -vF '#include "vndoc6/'
}

check_layers() {
  local found difference
  found=$(find_upward_includes) || return 1
  difference=$(diff <(upward_includes | sort) <(echo "$found"))
  sed -n 's/^> /points upwards: /p; s/^< /listed, but gone: /p' <<<"$difference"
  if find_includes_of_the_inside; then return 1; fi
  [[ -z $difference ]]
}
