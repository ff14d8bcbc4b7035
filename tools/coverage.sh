# `./dev coverage`: how much of what reads files the unit tests and the fuzz targets' seeds run.

# What takes in texts that may come from anywhere.
parsing_sources=(
  {src,include/vndoc6}/automation/{base64,text,variant}.{h,cpp}
  {src,include/vndoc6}/bag/{bag_reader,bag_scanner,escape,kept_text,levelled_text}.{h,cpp}
  include/vndoc6/bag/lazy.h src/bag/unchanged_text.h src/bag/properties.cpp
  include/vndoc6/collections/keyed_store.h src/collections/collection_text.h
  src/document/document_load.cpp src/process/{attachment_list,step_text}.cpp
  src/templates/{tag_text,template_library}.cpp
  hosts/vndoc/{json_reader,json_values,outline_reader,read_json}.cpp
  src/content/restore.cpp src/document/saved_form.cpp
  src/content/salvage{,_entries,_likeness,_marks,_order,_pieces,_reader,_sound,_texts,_tree,_whole}.cpp
)

coverage() {
  setup build test lint coverage || exit 1
  local subject targets=(vndoc6_tests vndoc6_memory_tests vndoc_tests)
  for subject in fuzz/corpus/*; do targets+=("$(basename "$subject")_fuzz"); done
  check "coverage build" build coverage "${targets[@]}" || exit 1
  rm -rf build/coverage/profiles
  check_cases "native tests" run_profiled vndoc6_tests
  check_cases "tests without memory" run_profiled vndoc6_memory_tests
  # Without those that limit a program, which could not write its profile either.
  check_cases "command-line host tests" run_profiled vndoc_tests --gtest_filter='-ProgramTest.*'
  for subject in fuzz/corpus/*; do
    check "seeds of $(basename "$subject")" run_profiled "$(basename "$subject")_fuzz" "$subject"/*
  done
  llvm-profdata merge -sparse build/coverage/profiles/* -o build/coverage/profile &&
    covered_lines && summary
}

# run_profiled PROGRAM ARGUMENT...
run_profiled() {
  local program=$1
  shift
  LLVM_PROFILE_FILE="build/coverage/profiles/$program" limited "build/coverage/$program" "$@"
}

# A line for each source: how many of its lines were run, and the numbers of those that were not.
covered_lines() {
  local programs=() program
  for program in build/coverage/profiles/*; do
    programs+=(-object "build/coverage/$(basename "$program")")
  done
  # Names come as the compiler got them, which llvm-cov does not match with those of the tree.
  llvm-cov export -format=lcov -instr-profile=build/coverage/profile "${programs[@]:1}" |
    awk -F '[:,]' -v sources="${parsing_sources[*]}" '
      BEGIN { split(sources, names, " "); for (i in names) wanted[names[i]] = 1 }
      $1 == "SF" { file = $2; sub(/^.*\/\.\.\//, "", file); lines = run = 0; missed = "" }
      $1 == "DA" { lines++; if ($3 > 0) run++; else missed = missed " " $2 }
      $1 == "end_of_record" && lines > 0 && file in wanted {
        printf "%6.1f %%  %s%s\n", 100 * run / lines, file, missed != "" ? ", not run:" missed : ""
        all_lines += lines; all_run += run }
      END { if (!all_lines) exit 1
            printf "%6.1f %%  of %d lines\n", 100 * all_run / all_lines, all_lines }'
}
