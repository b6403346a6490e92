# Queries of real documents.
say "Which MIME types are there?"
lines=5
run query '/mime-info|mime-type|@type' "$mime"

say "The days of the week in three languages, as a table"
cd "$cldr/main"
lines=9
run query -t '/ldml|dates|calendars|calendar|days|dayContext|dayWidth' en.xml el.xml ja.xml

say "Countries, as JSON: one object per row"
cd /usr/share/xml/iso-codes
lines=4
run query -f json '/iso_3166_entries|iso_3166_entry|@name' iso_3166.xml

say "A path that matches nothing says which step failed"
expect=1
run query '/mime-info|mime-typ|glob|@pattern' "$mime"
