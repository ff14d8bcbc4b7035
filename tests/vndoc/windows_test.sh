# vndoc.exe does what the native program does. For tools/test.sh, which has started Wine.
# windows_test FOLDER

windows_test() {
  local folder=$1 exe=build/win64/vndoc.exe native=build/native/vndoc name="größer & $(date +%N)"
  local file="$folder/$name.vn6"
  mkdir -p "$folder"
  printf 'Ask @Employee\nOrder\n  - Write it\n' >"$folder/outline.txt"
  say() { wine_run "$exe" "$@"; }

  # Each program reads what the other wrote.
  say new "$(windows_path "$file")" --from "$(windows_path "$folder/outline.txt")" --force || return 1
  say edit "$(windows_path "$file")" set Steps/1/Label "Señor “λ”" || return 1
  diff <("$native" show --json "$file") <(say show --json "$(windows_path "$file")") || return 1
  diff <("$native" render "$file" -o -) <(say render "$(windows_path "$file")" -o -) || return 1
  diff <("$native" report "$file" -o -) <(say report "$(windows_path "$file")" -o -) || return 1
  "$native" show "$file" | grep -q 'Señor “λ”' || return 1
  say check "$(windows_path "$file")" || return 1
  "$native" show --json "$file" >"$folder/plan.json"
  say from-json "$(windows_path "$folder/plan.json")" "$(windows_path "$folder/copy.vn6")" &&
    "$native" diff "$file" "$folder/copy.vn6" || return 1
  # Errors are one line and the documented status.
  local error status=0
  error=$(say show "$(windows_path "$folder/none.vn6")" 2>&1) || status=$?
  [[ $status -eq 2 && $error == "vndoc: "*"none.vn6: No such file or directory"* ]] || return 1
  error=$(say render "$(windows_path "$file")" --png -o - 2>&1)
  [[ $error == "vndoc: no converter for png is installed"* ]]
}
