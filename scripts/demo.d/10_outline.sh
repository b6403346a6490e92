# Outlines of real documents.
mime=/usr/share/mime/packages/freedesktop.org.xml
cldr=/usr/share/unicode/cldr/common

say "What is in the MIME type database? $(du -h "$mime" | cut -f1) of XML, in one screen"
lines=20
run outline "$mime"

say "The same as paths, as queries take them"
lines=6
run outline -f paths "$mime"

say "All $(ls "$cldr"/main/*.xml | wc -l) locale files of CLDR, $(du -sh "$cldr/main" | cut -f1)"
cd "$cldr/main"
shown='outline -o outlines.txt *.xml'
run outline -o "$folder/outlines.txt" ./*.xml
shown=
note "outlines.txt has $(wc -l <"$folder/outlines.txt") lines"
