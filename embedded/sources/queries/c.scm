; What is declared.
(function_definition declarator: (function_declarator declarator: (identifier) @name) body: (_) @body) @declaration
(function_definition declarator: (pointer_declarator declarator: (function_declarator declarator: (identifier) @name)) body: (_) @body) @declaration
(function_definition declarator: (pointer_declarator declarator: (pointer_declarator declarator: (function_declarator declarator: (identifier) @name))) body: (_) @body) @declaration
(declaration declarator: (function_declarator declarator: (identifier) @name)) @declaration
(declaration declarator: (pointer_declarator declarator: (function_declarator declarator: (identifier) @name))) @declaration
(declaration declarator: (identifier) @name) @variable
(declaration declarator: (pointer_declarator declarator: (identifier) @name)) @variable
(declaration declarator: (array_declarator declarator: (identifier) @name)) @variable
(declaration declarator: (init_declarator declarator: (identifier) @name value: (_) @value)) @variable
(declaration declarator: (init_declarator declarator: (pointer_declarator declarator: (identifier) @name) value: (_) @value)) @variable
(declaration declarator: (init_declarator declarator: (array_declarator declarator: (identifier) @name) value: (_) @value)) @variable
(declaration declarator: (init_declarator declarator: (array_declarator declarator: (array_declarator declarator: (identifier) @name)) value: (_) @value)) @variable
(struct_specifier name: (_) @name body: (_) @body) @declaration
(union_specifier name: (_) @name body: (_) @body) @declaration
(enum_specifier name: (_) @name body: (_) @body) @declaration
(enumerator name: (_) @name) @declaration
(field_declaration declarator: (field_identifier) @name) @declaration
(field_declaration declarator: (pointer_declarator declarator: (field_identifier) @name)) @declaration
(field_declaration declarator: (array_declarator declarator: (field_identifier) @name)) @declaration
(field_declaration declarator: (function_declarator declarator: (parenthesized_declarator (pointer_declarator declarator: (field_identifier) @name)))) @declaration
(type_definition declarator: (type_identifier) @name) @declaration
(type_definition declarator: (pointer_declarator declarator: (type_identifier) @name)) @declaration
(type_definition declarator: (function_declarator declarator: (parenthesized_declarator (pointer_declarator declarator: (type_identifier) @name)))) @declaration
(preproc_def name: (_) @name) @declaration
(preproc_function_def name: (_) @name) @declaration

; What a variable holds, and says of itself.
(declaration declarator: (init_declarator value: (_) @value)) @of
(declaration (type_qualifier) @const (#eq? @const "const")) @constant

; What is hidden.
(function_definition (storage_class_specifier) @static (#eq? @static "static")) @hidden
(declaration (storage_class_specifier) @static (#eq? @static "static")) @hidden

(function_definition body: (_) @local)

(comment) @comment
