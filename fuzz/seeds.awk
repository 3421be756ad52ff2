# Writes every statement of the case files, without what it answers, into a file of its own: awk -v to=FOLDER -f
# seeds.awk FILE...
function finish() {
  if (statement != "") {
    file = to "/" name "-" ++count
    printf "%s", statement > file
    close(file)
  }
  statement = ""
  answer = 0
}
FNR == 1 { finish(); name = FILENAME; sub(/.*\//, "", name) }
$0 == "====" { finish(); next }
$0 == "----" { answer = 1; next }
answer { next }
statement == "" && /^(#|run )/ { next }
{ statement = statement $0 "\n" }
END { finish() }
