# The options of a dialog: changed, saved as a theme, applied to a fresh tree, and compared.
dialog=dialog.xml
cp "$project/examples/$dialog" "$folder"
cd "$folder"

say "The options of a dialog, with the identifiers under which their values travel"
lines=14
run values list "$dialog"

sed -e 's/>20</>35</' -e 's/"11" Use="0"/"11" Use="1"/' -e 's/>Positive</>Both</' "$dialog" >changed.xml
note "
Somebody changes three of them. What differs?"
lines=6
run changes changed.xml --against "$dialog"

say "The changed options become a theme, and the theme goes into a fresh dialog"
run theme save changed.xml -o theme.xml --comment 'Both directions, high peaks'
run theme apply theme.xml "$dialog" -o fresh.xml
note "Nothing differs from the changed dialog any more:"
expect=1
run changes fresh.xml --against changed.xml
expect=0

say "What cannot be done is refused, and nothing is written"
sed -e 's/RepeatID="2"/RepeatID="1"><Inner RepeatID="1"\/><x/; s/<\/Range2>/<\/x><\/Range2>/' "$dialog" >broken.xml
expect=4
run theme apply theme.xml broken.xml -o never.xml
