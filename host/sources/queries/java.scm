; What is declared.
(class_declaration name: (_) @name body: (_) @body) @class
(interface_declaration name: (_) @name body: (_) @body) @interface
(enum_declaration name: (_) @name body: (_) @body) @enum
(record_declaration name: (_) @name body: (_) @body) @class
(record_declaration parameters: (formal_parameters (formal_parameter name: (_) @name) @attribute))
(record_declaration parameters: (formal_parameters (spread_parameter (variable_declarator name: (_) @name)) @attribute))
(annotation_type_declaration name: (_) @name body: (_) @body) @interface
(method_declaration name: (_) @name) @method
(constructor_declaration name: (_) @name body: (_) @body) @constructor
(compact_constructor_declaration name: (_) @name body: (_) @body) @constructor
(annotation_type_element_declaration name: (_) @name) @method
(enum_constant name: (_) @name) @constant
(field_declaration declarator: (variable_declarator name: (_) @name) @attribute)
(constant_declaration declarator: (variable_declarator name: (_) @name) @attribute)

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
