# Marks plain comments as documentation for the site: those that begin a line, the first of a file as
# the file's, and what stands behind a member. Names of headers in angle brackets are text.
/^ *\/\//s/</\&lt;/g
1s|^// |/// \\file\n/// |
s|^( *)//( .*)?$|\1///\2|
s|;  // |;  ///< |
