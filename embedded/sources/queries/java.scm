; What is declared.
(class_declaration name: (_) @name body: (_) @body) @declaration
(interface_declaration name: (_) @name body: (_) @body) @declaration
(enum_declaration name: (_) @name body: (_) @body) @declaration
(record_declaration name: (_) @name body: (_) @body) @declaration
(annotation_type_declaration name: (_) @name body: (_) @body) @declaration
(method_declaration name: (_) @name) @declaration
(constructor_declaration name: (_) @name body: (_) @body) @declaration
(compact_constructor_declaration name: (_) @name body: (_) @body) @declaration
(annotation_type_element_declaration name: (_) @name) @declaration
(enum_constant name: (_) @name) @declaration
(field_declaration declarator: (variable_declarator name: (_) @name) @declaration)
(constant_declaration declarator: (variable_declarator name: (_) @name) @declaration)

; What belongs to the declaration in it.
(field_declaration) @wrapper
(constant_declaration) @wrapper

; Bodies, and what a field holds.
(method_declaration body: (_) @body) @of
(variable_declarator value: (_) @value) @of

; What is public.
(class_declaration (modifiers "public")) @exported
(interface_declaration (modifiers "public")) @exported
(enum_declaration (modifiers "public")) @exported
(record_declaration (modifiers "public")) @exported
(annotation_type_declaration (modifiers "public")) @exported

[(line_comment) (block_comment)] @comment
