# Checks of the scripts that try the programs among other programs; to be sourced by bash.

passed=0
failed=0

# check WHAT COMMAND...: the command succeeds. What it prints is shown only if it does not.
check() {
  local what=$1 output
  shift
  if output=$("$@" 2>&1); then
    passed=$((passed + 1))
    echo "ok      $what"
  else
    failed=$((failed + 1))
    echo "FAILED  $what"
    printf '%s\n' "$output" | head -n 20 | sed 's/^/          /'
  fi
}

# same EXPECTED FOUND: two texts are one and the same.
same() {
  diff <(printf '%s\n' "$1") <(printf '%s\n' "$2")
}

end_of_checks() {
  printf '\n%s passed, %s failed\n' "$passed" "$failed"
  [ "$failed" -eq 0 ]
}
