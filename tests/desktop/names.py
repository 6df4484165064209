"""Which file of a theme must stand behind each X11 cursor name: the tour's own copy of the two tables, so that a
slip in the program's tables shows. Each row: the X11 names that one identifier covers, and the theme's files
that may supply it, first found first."""

ROWS = [
    ("left_ptr default arrow top_left_arrow left-arrow", "left_ptr default arrow top_left_arrow"),
    ("xterm text ibeam", "xterm text ibeam"),
    ("alias dnd-link link", "alias dnd-link link"),
    ("copy dnd-copy", "copy dnd-copy"),
    ("move fleur size_all all-scroll all-resize dnd-move pointer-move", "move fleur size_all all-scroll"),
    ("context-menu context_menu right_ptr", "context-menu context_menu right_ptr"),
    ("wait watch", "wait watch"),
    ("not-allowed forbidden crossed_circle no-drop circle dnd-none dnd-no-drop dnd_no_drop",
     "not-allowed forbidden crossed_circle no-drop"),
    ("left_ptr_watch progress half-busy", "left_ptr_watch progress half-busy"),
    ("crosshair cross tcross cross_reverse diamond_cross", "crosshair cross tcross"),
    ("grabbing closedhand closed_hand", "grabbing closedhand closed_hand"),
    ("grab openhand open_hand hand1", "grab openhand open_hand hand1"),
    ("pointer hand2 pointing_hand hand", "pointer hand2 pointing_hand hand1"),
    ("cell plus", "cell plus tcross"),
    ("left_side w-resize", "left_side w-resize size_hor"),
    ("right_side e-resize", "right_side e-resize size_hor"),
    ("top_side n-resize", "top_side n-resize size_ver"),
    ("bottom_side s-resize", "bottom_side s-resize size_ver"),
    ("size_hor size-hor sb_h_double_arrow ew-resize h_double_arrow col-resize split_h",
     "size_hor sb_h_double_arrow ew-resize h_double_arrow"),
    ("size_ver size-ver sb_v_double_arrow ns-resize v_double_arrow row-resize split_v double_arrow",
     "size_ver sb_v_double_arrow ns-resize v_double_arrow"),
    ("pirate X_cursor x-cursor", "pirate X_cursor x-cursor"),
    ("vertical-text", "vertical-text"),
    ("top_right_corner ne-resize", "top_right_corner ne-resize size_bdiag nesw-resize"),
    ("top_left_corner nw-resize", "top_left_corner nw-resize size_fdiag nwse-resize"),
    ("bottom_right_corner se-resize", "bottom_right_corner se-resize size_fdiag nwse-resize"),
    ("bottom_left_corner sw-resize", "bottom_left_corner sw-resize size_bdiag nesw-resize"),
    ("size_bdiag nesw-resize fd_double_arrow", "size_bdiag nesw-resize bd_double_arrow top_right_corner"),
    ("size_fdiag nwse-resize bd_double_arrow", "size_fdiag nwse-resize fd_double_arrow bottom_right_corner"),
    ("help question_arrow whats_this left_ptr_help dnd-ask", "help question_arrow whats_this left_ptr_help"),
    ("zoom-in zoom_in zoomin", "zoom-in zoom_in zoomin"),
    ("zoom-out zoom_out zoomout", "zoom-out zoom_out zoomout"),
]

FILES = {name: files.split() for names, files in ROWS for name in names.split()}
#: The other names of the row that a name is in.
RELATIVES = {name: [other for other in names.split() if other != name] for names, _ in ROWS for name in names.split()}
