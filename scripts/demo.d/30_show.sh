# A tree, and what is said about a broken one.
say "A tree with all its attributes"
cd "$cldr/supplemental"
lines=8
run show -a windowsZones.xml

say "A file that was cut off"
head -c 100000 "$mime" >"$folder/cut.xml"
cd "$folder"
expect=3
run show cut.xml
